# The tests' ODBC configuration: the machine's own drivers where one of them speaks to SQL Server, FreeTDS where none
# does, the tests' recording driver beside them, and no data sources. Where the machine's own will not do there is one
# for ./run, too, which scripts/odbc-environment.sh finds. Programs find a configuration through ODBCSYSINI.
set(TW_ODBC_FOLDER ${CMAKE_BINARY_DIR}/odbc)
set(TW_ODBC_RUN_FOLDER ${CMAKE_BINARY_DIR}/odbc-run)
file(REMOVE_RECURSE ${TW_ODBC_RUN_FOLDER})

set(registered "")
execute_process(COMMAND odbcinst -j OUTPUT_VARIABLE places ERROR_QUIET)
if(places MATCHES "DRIVERS\\.*: *([^\n]+)")
  set(place "${CMAKE_MATCH_1}")
  if(EXISTS "${place}")
    file(READ "${place}" registered)
  endif()
endif()
string(TOLOWER "\n${registered}" lower)
if(NOT lower MATCHES "\n\\[(sql server|odbc driver [0-9]+ for sql server|freetds)\\]"
   AND NOT lower MATCHES "\ndriver[^\n]*(tdsodbc|msodbcsql|sqlncli)")
  find_library(TW_TDSODBC NAMES libtdsodbc.so tdsodbc PATH_SUFFIXES odbc)
  if(NOT TW_TDSODBC)
    message(FATAL_ERROR "No ODBC driver for SQL Server is registered, and FreeTDS's (libtdsodbc.so, Debian package "
                        "tdsodbc) is missing.")
  endif()
  string(APPEND registered "\n[FreeTDS]\nDriver=${TW_TDSODBC}\n")
  file(WRITE ${TW_ODBC_RUN_FOLDER}/odbcinst.ini "${registered}")
endif()
set(recorder ${CMAKE_BINARY_DIR}/tests/support/libtw_recording_driver.so)
file(WRITE ${TW_ODBC_FOLDER}/odbcinst.ini "${registered}\n[Recording Driver]\nDriver=${recorder}\n")
file(WRITE ${TW_ODBC_FOLDER}/odbc.ini "")
set(TW_TEST_ENVIRONMENT "ODBCSYSINI=${TW_ODBC_FOLDER};ODBCINI=${TW_ODBC_FOLDER}/user-odbc.ini")
