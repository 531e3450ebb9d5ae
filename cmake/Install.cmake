# cmake --install, in three components: Runtime is the shared library as programs load it,
# Command is diskFree, and Development is what is needed to build against the library.

# The umbrella is the list of the public headers.
set(umbrella "${PROJECT_SOURCE_DIR}/src/mailhearth.h")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${umbrella}")
file(STRINGS "${umbrella}" public_headers REGEX "^#include \"")
list(TRANSFORM public_headers REPLACE "^#include \"([^\"]*)\".*" "\\1")
foreach(header IN LISTS public_headers ITEMS mailhearth.h)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES "${PROJECT_SOURCE_DIR}/src/${header}"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/mailhearth/${folder}" COMPONENT Development)
endforeach()
install(TARGETS mailhearth_static mailhearth_shared EXPORT Mailhearth
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Development
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Runtime
  NAMELINK_COMPONENT Development)
install(TARGETS diskFree RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Command)

# find_package(Mailhearth) gives mailhearth::mailhearth, which is shared, and
# mailhearth::static.
include(CMakePackageConfigHelpers)
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Mailhearth")
install(EXPORT Mailhearth NAMESPACE mailhearth:: FILE MailhearthConfig.cmake
  DESTINATION "${package_dir}" COMPONENT Development)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/MailhearthConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/MailhearthConfigVersion.cmake"
  DESTINATION "${package_dir}" COMPONENT Development)

# The .pc file finds the rest from its own place, so an installed tree can be moved; what
# is asked for at an absolute place is there.
set(pc_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(MAILHEARTH_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH to_prefix "/prefix/${pc_dir}" "/prefix")
  set(MAILHEARTH_PC_PREFIX "\${pcfiledir}/${to_prefix}")
endif()
foreach(dir IN ITEMS INCLUDEDIR LIBDIR)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${dir}}")
    set(MAILHEARTH_PC_${dir} "${CMAKE_INSTALL_${dir}}")
  else()
    set(MAILHEARTH_PC_${dir} "\${prefix}/${CMAKE_INSTALL_${dir}}")
  endif()
endforeach()
configure_file("${PROJECT_SOURCE_DIR}/cmake/mailhearth.pc.in" mailhearth.pc @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/mailhearth.pc" DESTINATION "${pc_dir}" COMPONENT Development)

# Documents. The manual of the command (section 1) goes with it.
file(GLOB pages CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/*.md")
install(FILES README.md CHANGELOG.md SECURITY.md LICENSE ${pages}
  DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT Development)
file(GLOB manuals CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/man/*.[0-9]")
foreach(manual IN LISTS manuals)
  cmake_path(GET manual EXTENSION LAST_ONLY section)
  string(SUBSTRING "${section}" 1 -1 section)
  set(component Development)
  if(section EQUAL 1)
    set(component Command)
  endif()
  install(FILES "${manual}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man${section}"
    COMPONENT ${component})
endforeach()

# gdb looks for printers in a folder named after the place of the library, under the
# library's full name. That place is known when --prefix has been read.
file(GLOB printers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tools/gdb/*.py")
if(printers)
  set(gdb_libdir "${CMAKE_INSTALL_LIBDIR}")
  if(NOT IS_ABSOLUTE "${gdb_libdir}")
    set(gdb_libdir "\${CMAKE_INSTALL_PREFIX}/${gdb_libdir}")
  endif()
  install(CODE "file(INSTALL \"${printers}\"
    DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/gdb/auto-load${gdb_libdir}\"
    RENAME \"libmailhearth.so.${PROJECT_VERSION}-gdb.py\")" COMPONENT Development)
endif()
