# Read by cpack before it works: what it packs carries the time of the changelog, so that
# the same sources give the same packages.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(
    COMMAND dpkg-parsechangelog -l "${CPACK_MAILHEARTH_CHANGELOG}" -S Timestamp
    OUTPUT_VARIABLE timestamp OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(ENV{SOURCE_DATE_EPOCH} "${timestamp}")
endif()
