# Compresses what Debian wants compressed, in the folder from which cpack makes the package.
foreach(page ngrex ngrex-import ngrex-table)
  execute_process(COMMAND gzip -9n ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/man/man1/${page}.1 COMMAND_ERROR_IS_FATAL ANY)
endforeach()
set(documents ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/doc/ngrex)
execute_process(COMMAND gzip -9nc ${documents}/CHANGELOG.md OUTPUT_FILE ${documents}/changelog.gz COMMAND_ERROR_IS_FATAL ANY)
