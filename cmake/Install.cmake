# cmake --install: the headers, the archive, mailhearth.pc and the command.

install(DIRECTORY "${PROJECT_SOURCE_DIR}/src/"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/mailhearth"
  FILES_MATCHING PATTERN "*.h" PATTERN "command" EXCLUDE)
install(TARGETS mailhearth_static ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(TARGETS diskFree RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")

# The .pc file finds the rest from its own place, so an installed tree can be moved.
set(pc_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH MAILHEARTH_PC_TO_PREFIX "/prefix/${pc_dir}" "/prefix")
configure_file("${PROJECT_SOURCE_DIR}/cmake/mailhearth.pc.in" mailhearth.pc @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/mailhearth.pc" DESTINATION "${pc_dir}")
