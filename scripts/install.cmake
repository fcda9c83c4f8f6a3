# Installation, in parts: the library ("runtime"), what programs are built with ("development"), the tool ("tool"), and the module for simulators ("vpi").
# find_package(tesk) gives tesk::tesk and tesk::tesk_static, pkg-config knows tesk. Headers that lie directly in a folder are
# the interface; those in its subfolders stay behind.
include(CMakePackageConfigHelpers)

set(libraries tesk)
if(BUILD_SHARED_LIBS AND TESK_INSTALL_STATIC)
    list(APPEND libraries tesk_static)
endif()
install(TARGETS ${libraries} EXPORT tesk-targets
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT development ARCHIVE COMPONENT development)
set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/tesk)
install(EXPORT tesk-targets NAMESPACE tesk:: DESTINATION ${packageFolder} COMPONENT development)
configure_package_config_file(scripts/tesk-config.cmake.in ${PROJECT_BINARY_DIR}/tesk-config.cmake
    INSTALL_DESTINATION ${packageFolder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/tesk-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/tesk-config.cmake ${PROJECT_BINARY_DIR}/tesk-config-version.cmake
    DESTINATION ${packageFolder} COMPONENT development)

# The folders stand in tesk.pc as they lie from its own, so that the installation may be moved, or made elsewhere than was
# said when this was configured. Folders outside of the prefix stay where they are.
function(tell_folder variable folder)
    cmake_path(IS_PREFIX CMAKE_INSTALL_PREFIX ${folder} NORMALIZE isInside)
    if(isInside)
        cmake_path(RELATIVE_PATH folder BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX})
        set(folder "\${prefix}/${folder}")
    endif()
    set(${variable} ${folder} PARENT_SCOPE)
endfunction()
set(TESK_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
cmake_path(IS_PREFIX CMAKE_INSTALL_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR} NORMALIZE isInside)
if(isInside)
    cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
        OUTPUT_VARIABLE up)
    set(TESK_PC_PREFIX "\${pcfiledir}/${up}")
endif()
tell_folder(TESK_PC_LIBDIR ${CMAKE_INSTALL_FULL_LIBDIR})
tell_folder(TESK_PC_INCLUDEDIR ${CMAKE_INSTALL_FULL_INCLUDEDIR})
list(TRANSFORM dependencies PREPEND "-l" OUTPUT_VARIABLE TESK_PC_PRIVATE)
list(JOIN TESK_PC_PRIVATE " " TESK_PC_PRIVATE)
set(TESK_PC_LIBS "")
if(NOT BUILD_SHARED_LIBS)
    set(TESK_PC_LIBS " ${TESK_PC_PRIVATE}")  # no user of a static library links without
endif()
configure_file(scripts/tesk.pc.in ${PROJECT_BINARY_DIR}/tesk.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tesk.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

install(FILES tesk.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tesk COMPONENT development)
foreach(folder ${TESK_FOLDERS})
    file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.h)
    install(FILES ${headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tesk/${folder} COMPONENT development)
endforeach()
