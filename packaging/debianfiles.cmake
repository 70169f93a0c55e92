# Run by cpack on the folder that becomes the package: what Debian wants compressed, and its own change log.
set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share)
file(
  WRITE ${share}/doc/tablewright/changelog
  "tablewright (@PROJECT_VERSION@) unstable; urgency=medium\n\n"
  "  * What this version holds is told in CHANGELOG.md.\n\n"
  " -- @TW_PACKAGE_CONTACT@  @TW_DATE@\n")
file(GLOB plain ${share}/man/man1/*.1 ${share}/doc/tablewright/c*log ${share}/doc/tablewright/CHANGELOG.md)
execute_process(COMMAND gzip -9nf ${plain} COMMAND_ERROR_IS_FATAL ANY)
