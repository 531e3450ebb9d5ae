# cmake --install: the headers, the archive, mailhearth.pc and the command.

# Headers that serve the library alone stay at home.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/src/"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/mailhearth"
  FILES_MATCHING PATTERN "*.h"
  PATTERN "command" EXCLUDE
  PATTERN "engine" EXCLUDE
  PATTERN "Bytes.h" EXCLUDE
  PATTERN "Descriptor.h" EXCLUDE
  PATTERN "ErrnoKeeper.h" EXCLUDE
  PATTERN "LoopbackSocket.h" EXCLUDE
  PATTERN "Options.h" EXCLUDE
  PATTERN "PatternStore.h" EXCLUDE
  PATTERN "Replacement.h" EXCLUDE
  PATTERN "ScanRules.h" EXCLUDE
  PATTERN "Search.h" EXCLUDE
  PATTERN "Searches.h" EXCLUDE
  PATTERN "Sizes.h" EXCLUDE
  PATTERN "StandardError.h" EXCLUDE
  PATTERN "StartUp.h" EXCLUDE
  PATTERN "TokenWords.h" EXCLUDE)
install(TARGETS mailhearth_static ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(TARGETS diskFree RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")

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
install(FILES "${PROJECT_BINARY_DIR}/mailhearth.pc" DESTINATION "${pc_dir}")
