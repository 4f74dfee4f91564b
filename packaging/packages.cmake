# Three Debian packages, one for each component of the installation.
set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_NAME fetchyard)
# Each package has a summary of its own, as the first line of its description.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_CONTACT "Fetchyard maintainers <maintainers@users.noreply.c-seed-a457b22c.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_SOURCE_DIR}/strip.cmake")
# Whatever the umask of who makes them.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL client library development)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE ${debian_release})
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
# What the programs and libraries link; our own libraries are found in the build.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(exact "(= ${PROJECT_VERSION}-${debian_release})")

# The siblings and the client have to be of one build: the interfaces between them are C++.
set(CPACK_DEBIAN_CLIENT_PACKAGE_NAME fetchyard)
set(CPACK_DEBIAN_CLIENT_PACKAGE_SECTION video)
set(CPACK_DEBIAN_CLIENT_PACKAGE_DEPENDS "libfetchyard ${exact}")
# The window asks the desktop to open folders and reports.
set(CPACK_DEBIAN_CLIENT_PACKAGE_RECOMMENDS xdg-utils)
set(CPACK_DEBIAN_CLIENT_DESCRIPTION "downloads and exports of a video-security station
Exports the events of a station, page by page, as a workbook, a CSV or text
file or a PDF, with their pictures and videos; packs them with a password,
registers them as evidence, and fetches single pictures, recordings and clips.
What a crash left unfinished is brought back.
.
This package has the client, a command line and a window, and the station, a
data server to run it against.")

# 7-Zip and wkhtmltopdf are started as processes.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libfetchyard)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS
    "ca-certificates, fonts-dejavu-core, fonts-droid-fallback, p7zip-full, wkhtmltopdf")
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "business layer of downloads and exports - libraries
Takes requests as JSON or records, fetches pictures, files, recordings and
report pages from a station, writes the reports, packs them, and tells every
state of every task.
.
This package has the library, the libraries around it, and the plug-ins for
recorded video and for evidence.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libfetchyard-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libfetchyard ${exact}, libboost-thread-dev, qtbase5-dev")
# The documents, and a station to try a host on.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS fetchyard)
# One of the headers leans on those of FFmpeg.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS
    "libavcodec-dev, libavformat-dev, libavutil-dev, libswresample-dev, libswscale-dev")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "business layer of downloads and exports - headers
Takes requests as JSON or records, fetches pictures, files, recordings and
report pages from a station, writes the reports, packs them, and tells every
state of every task.
.
This package has the headers, what CMake needs to find the library, and
examples of a host and of a library that takes the place of one of ours.")

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} upper)
    set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
    install(FILES debian/copyright "${made}/changelog.Debian.gz" COMPONENT ${component}
            DESTINATION ${documents}/${package})
    install(FILES debian/${package}.lintian-overrides RENAME ${package} COMPONENT ${component}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides)
endforeach()
include(CPack)
