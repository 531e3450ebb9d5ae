# cmake --install, in three components: Runtime is the shared library as programs load it,
# Command is diskFree, and Development is what is needed to build against the library.

# Headers that serve the library alone stay at home.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/src/"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/mailhearth" COMPONENT Development
  FILES_MATCHING PATTERN "*.h"
  PATTERN "command" EXCLUDE
  PATTERN "engine" EXCLUDE
  PATTERN "Blocks.h" EXCLUDE
  PATTERN "ByteWords.h" EXCLUDE
  PATTERN "Characters.h" EXCLUDE
  PATTERN "Covered.h" EXCLUDE
  PATTERN "Descriptor.h" EXCLUDE
  PATTERN "ErrnoKeeper.h" EXCLUDE
  PATTERN "EnvironmentVariables.h" EXCLUDE
  PATTERN "Fields.h" EXCLUDE
  PATTERN "Layout.h" EXCLUDE
  PATTERN "LoopbackSocket.h" EXCLUDE
  PATTERN "Mapping.h" EXCLUDE
  PATTERN "Options.h" EXCLUDE
  PATTERN "PathText.h" EXCLUDE
  PATTERN "PatternOptions.h" EXCLUDE
  PATTERN "PatternStore.h" EXCLUDE
  PATTERN "PointerText.h" EXCLUDE
  PATTERN "Replacement.h" EXCLUDE
  PATTERN "ScanRules.h" EXCLUDE
  PATTERN "Search.h" EXCLUDE
  PATTERN "Searches.h" EXCLUDE
  PATTERN "Sizes.h" EXCLUDE
  PATTERN "SmallBlocks.h" EXCLUDE
  PATTERN "StandardError.h" EXCLUDE
  PATTERN "StartUp.h" EXCLUDE
  PATTERN "TokenWords.h" EXCLUDE)
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
