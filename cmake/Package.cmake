# cpack: the Debian packages, of a build with the preset "package". The components of
# cmake/Install.cmake are a package each, and so are the debug symbols of those that are
# linked; cmake/PackageFiles.cmake makes of the installed files what Debian asks for.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME mailhearth)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_COMPONENTS_ALL Runtime RuntimeDebug Development Command CommandDebug)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_SET_DESTDIR ON)  # so that files that tell of their place tell of the final one
set(CPACK_PROJECT_CONFIG_FILE "${PROJECT_SOURCE_DIR}/cmake/PackageTime.cmake")
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/PackageFiles.cmake")

# The maintainer, and the time that all packaged files carry, are those of the changelog.
set(CPACK_MAILHEARTH_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_MAILHEARTH_CHANGELOG "${PROJECT_SOURCE_DIR}/cmake/debian/changelog")
file(READ "${CPACK_MAILHEARTH_CHANGELOG}" changelog)
if(NOT changelog MATCHES "^mailhearth \\(([^)]*)\\)[^>]*\n -- ([^\n>]*>)"
   OR NOT CMAKE_MATCH_1 STREQUAL PROJECT_VERSION)
  message(FATAL_ERROR "${CPACK_MAILHEARTH_CHANGELOG} does not begin with ${PROJECT_VERSION}")
endif()
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${CMAKE_MATCH_2}")

# mailhearth_package(COMPONENT NAME SECTION DEPENDS DESCRIPTION)
macro(mailhearth_package component name section depends description)
  set(CPACK_DEBIAN_${component}_PACKAGE_NAME "${name}")
  set(CPACK_DEBIAN_${component}_PACKAGE_SECTION "${section}")
  set(CPACK_DEBIAN_${component}_PACKAGE_DEPENDS "${depends}")
  set(CPACK_DEBIAN_${component}_DESCRIPTION "${description}")
endmacro()

set(runtime "libmailhearth${MAILHEARTH_SOVERSION}")
set(what "Strings, lists, regular expressions, tables, mail addresses, queue
records and the system services that the modules of a mail server share.")
mailhearth_package(RUNTIME "${runtime}" libs "" "class library of a mail server
${what}
This package holds the shared library.")
mailhearth_package(DEVELOPMENT libmailhearth-dev libdevel
  "${runtime} (= ${PROJECT_VERSION}), libstdc++-12-dev | libstdc++-dev"
  "class library of a mail server (development files)
${what}
This package holds headers, static library and documents.")
mailhearth_package(COMMAND mailhearth-diskfree mail ""
  "tell whether a file system has room for twice a file
diskFree prints how many thousands of bytes the file system that holds
a file lacks to hold twice as much as the file, and tells by its exit
status whether it lacks any.")
foreach(component IN ITEMS RUNTIME COMMAND)
  set(name "${CPACK_DEBIAN_${component}_PACKAGE_NAME}")
  mailhearth_package("${component}DEBUG" "${name}-dbgsym" debug
    "${name} (= ${PROJECT_VERSION})" "debug symbols for ${name}
With this package installed gdb shows the functions, lines and variables
of what ${name} installs, and so do the tools
that draw profiles and read core files.")
endforeach()

# Programs that are packaged themselves learn from "shlibs" which package they need: any
# version since the last change of what the library shows, and that is this one as long
# as the numbers begin with 0.
file(CONFIGURE OUTPUT debian/shlibs
  CONTENT "libmailhearth ${MAILHEARTH_SOVERSION} ${runtime} (>= ${PROJECT_VERSION})\n")
file(CONFIGURE OUTPUT debian/triggers CONTENT "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  "${PROJECT_BINARY_DIR}/debian/shlibs" "${PROJECT_BINARY_DIR}/debian/triggers")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_STRICT_PERMISSION ON)  # not those of the umask

include(CPack)
