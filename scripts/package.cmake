# Debian packages, by `cpack` in a build folder: libtesk0, libtesk-dev and tesk, and tesk-vpi where the module is built.
# Configure with CMAKE_INSTALL_PREFIX=/usr, as the preset "package" does.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tesk)
set(CPACK_PACKAGE_VENDOR "The tesk developers")
set(CPACK_PACKAGE_CONTACT "The tesk developers <developers@tesk.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL runtime development tool)
if(TARGET tesk_vpi)
    list(APPEND CPACK_COMPONENTS_ALL vpi)
endif()
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/scripts/complete-packages.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/scripts/trim-packages.cmake)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})

# @param part  one of CPACK_COMPONENTS_ALL
function(describe_package part name section summary text)
    string(TOUPPER ${part} part)
    set(CPACK_DEBIAN_${part}_PACKAGE_NAME ${name} PARENT_SCOPE)
    set(CPACK_DEBIAN_${part}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${part}_DESCRIPTION "${summary}\n${text}" PARENT_SCOPE)
endfunction()
set(libraryPackage libtesk${PROJECT_VERSION_MAJOR})
describe_package(runtime ${libraryPackage} libs "stimulators and signals for VHDL and Verilog simulation"
    "libtesk turns formulas into values over time, and replays signals that
a simulator recorded in VCD, FST and GHW files.
.
This package holds the shared library, and what reads MAT-files where
there is no MATLAB.")
describe_package(development libtesk-dev libdevel "headers and static library of libtesk"
    "libtesk turns formulas into values over time, and replays signals that
a simulator recorded in VCD, FST and GHW files.
.
This package holds what programs that use it are built with.")
describe_package(tool tesk electronics "command-line tool for stimulators and waveform files"
    "tesk plays, checks and splits formulas of stimulators, lists and converts
waveform files of VHDL and Verilog simulators, and draws waves in the
terminal and as SVG.")
describe_package(vpi tesk-vpi electronics "stimulators for simulators with a VPI"
    "A module that applies the stimulators of tesk inside Icarus Verilog, GHDL
and other simulators that load VPI modules.")
set(exact "${libraryPackage} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${exact}, zlib1g-dev, liblz4-dev")
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${exact}")
set(CPACK_DEBIAN_VPI_PACKAGE_DEPENDS "${exact}")
set(CPACK_DEBIAN_VPI_PACKAGE_SUGGESTS "iverilog | ghdl")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
include(CPack)
