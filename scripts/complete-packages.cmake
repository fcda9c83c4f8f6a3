# Run by CPack on what it has installed for each package, before that is packed: adds what Debian's policy asks for.
set(source ${CMAKE_CURRENT_LIST_DIR}/..)
set(version ${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})

function(compress file)
    execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# The day of the version in CHANGELOG.md, or today for one that is not released yet.
function(find_date variable)
    file(STRINGS ${source}/CHANGELOG.md heading REGEX "^## ${CPACK_PACKAGE_VERSION}, ")
    set(command date -R)
    if(heading MATCHES ", (.+)$")
        set(command date -R --utc -d ${CMAKE_MATCH_1})
    endif()
    execute_process(COMMAND ${command} OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(${variable} ${date} PARENT_SCOPE)
endfunction()

function(add_documents folder)
    file(READ ${source}/LICENSE license)
    string(REGEX REPLACE "\n\n" "\n.\n" license "${license}")
    string(REGEX REPLACE "\n" "\n " license "${license}")
    string(STRIP "${license}" license)
    file(WRITE ${folder}/copyright
        "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\n"
        "Upstream-Name: tesk\n\nFiles: *\nCopyright: the authors of tesk\nLicense: Expat\n ${license}\n")
    find_date(date)
    file(WRITE ${folder}/changelog.Debian
        "tesk (${version}) unstable; urgency=medium\n\n  * Release ${CPACK_PACKAGE_VERSION}; changelog.gz tells what is new.\n\n"
        " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
    configure_file(${source}/CHANGELOG.md ${folder}/changelog COPYONLY)
    compress(${folder}/changelog.Debian)
    compress(${folder}/changelog)
endfunction()

foreach(part ${CPACK_COMPONENTS_ALL})
    string(TOUPPER ${part} key)
    set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${part}${CPACK_PACKAGING_INSTALL_PREFIX})
    add_documents(${root}/share/doc/${CPACK_DEBIAN_${key}_PACKAGE_NAME})
    file(GLOB pages ${root}/share/man/man?/*.?)
    foreach(page ${pages})
        compress(${page})
    endforeach()
    file(GLOB_RECURSE archives ${root}/lib/*.a)
    foreach(archive ${archives})
        execute_process(COMMAND strip --strip-debug -R .comment -R .note --enable-deterministic-archives ${archive}
            COMMAND_ERROR_IS_FATAL ANY)
    endforeach()
    file(GLOB_RECURSE files LIST_DIRECTORIES false ${root}/share/doc/* ${root}/share/man/*)
    if(files)
        file(CHMOD ${files} FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    endif()
endforeach()
