# An ODBC configuration of the build's own, so that the machine's stays as it is: the FreeTDS driver under the
# name "SQL Server". Programs find it through the environment variable ODBCSYSINI.
find_library(TW_TDSODBC NAMES libtdsodbc.so tdsodbc PATH_SUFFIXES odbc)
if(NOT TW_TDSODBC)
  message(FATAL_ERROR "The FreeTDS ODBC driver (libtdsodbc.so, Debian package tdsodbc) is missing.")
endif()
set(TW_ODBC_FOLDER ${CMAKE_BINARY_DIR}/odbc)
file(CONFIGURE OUTPUT ${TW_ODBC_FOLDER}/odbcinst.ini CONTENT "[SQL Server]\nDescription=SQL Server\nDriver=${TW_TDSODBC}\n")
file(CONFIGURE OUTPUT ${TW_ODBC_FOLDER}/odbc.ini CONTENT "")
set(TW_TEST_ENVIRONMENT "ODBCSYSINI=${TW_ODBC_FOLDER};ODBCINI=${TW_ODBC_FOLDER}/user-odbc.ini")
