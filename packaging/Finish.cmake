# CPack runs this once the files of all packages are in place, before they are packed: adds the documents
# that a Debian package carries, and takes away what only a debugger reads.
function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component panel library)
    string(TOUPPER ${component} upper)
    set(usr ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr)
    set(documents ${usr}/share/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
    run(install -d -m 0755 ${usr} ${usr}/share ${usr}/share/doc ${documents})
    run(install -m 0644 ${CMAKE_CURRENT_LIST_DIR}/debian/copyright ${CMAKE_CURRENT_LIST_DIR}/debian/changelog
        ${documents})
    # Without name and time: equal texts give equal files.
    file(GLOB texts ${documents}/changelog ${usr}/share/man/man*/*)
    run(gzip -9n ${texts})
    file(GLOB programs ${usr}/bin/*)
    foreach(program IN LISTS programs)
        run(strip --remove-section=.comment --remove-section=.note ${program})
    endforeach()
    file(GLOB_RECURSE libraries ${usr}/*.a)
    foreach(library IN LISTS libraries)
        run(strip --strip-debug --enable-deterministic-archives
            --remove-section=.comment --remove-section=.note ${library})
    endforeach()
endforeach()
