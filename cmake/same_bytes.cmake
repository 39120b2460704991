# Removes from a package what depends on who builds it and when: all files get the time of
# SOURCE_DATE_EPOCH, all folders the same permissions. Two builds of the same sources give the same
# package.
execute_process(
  COMMAND find ${CPACK_TEMPORARY_INSTALL_DIRECTORY} -type d -exec chmod 755 {} +
  COMMAND_ERROR_IS_FATAL ANY)
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(
    COMMAND find ${CPACK_TEMPORARY_INSTALL_DIRECTORY} -exec
            touch --no-dereference --date=@$ENV{SOURCE_DATE_EPOCH} {} +
    COMMAND_ERROR_IS_FATAL ANY)
endif()
