# Before a package is put together: takes what only a debugger or a linker needs out of its programs and libraries, and
# the notes of the compiler, as Debian's own tools do. CPack's own stripping leaves the notes.
file(GLOB_RECURSE files LIST_DIRECTORIES false "${CPACK_TEMPORARY_DIRECTORY}/*")
foreach(file IN LISTS files)
    file(READ "${file}" magic LIMIT 4 HEX)
    if(magic STREQUAL "7f454c46")
        execute_process(COMMAND strip --strip-unneeded --remove-section=.comment --remove-section=.note "${file}"
            COMMAND_ERROR_IS_FATAL ANY)
    endif()
endforeach()
