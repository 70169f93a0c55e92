# What every target of the house shares: warnings, sanitizers, and the compiler cache where there is one.

find_program(TW_CCACHE ccache)
if(TW_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${TW_CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${TW_CCACHE})
endif()

add_library(tw_flags INTERFACE)
target_compile_definitions(tw_flags INTERFACE QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS)
if(MSVC)
  target_compile_options(tw_flags INTERFACE /W4 $<$<BOOL:${TW_WARNINGS_AS_ERRORS}>:/WX>)
else()
  target_compile_options(
    tw_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor
                       -Woverloaded-virtual> $<$<BOOL:${TW_WARNINGS_AS_ERRORS}>:-Werror>)
  # What Debian builds its packages with; and no path of the machine that built them.
  target_compile_options(
    tw_flags INTERFACE $<$<CONFIG:Release>:-fstack-protector-strong -Werror=format-security -U_FORTIFY_SOURCE
                       -D_FORTIFY_SOURCE=2 -ffile-prefix-map=${CMAKE_SOURCE_DIR}=.>)
  target_link_options(tw_flags INTERFACE $<$<CONFIG:Release>:-Wl,-z,relro -Wl,-z,now>)
  if(TW_SANITIZE)
    # GCC sees uninitialized values in what its sanitizers put in.
    target_compile_options(tw_flags INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer
                                              -fno-sanitize-recover=all -Wno-maybe-uninitialized -O1)
    target_link_options(tw_flags INTERFACE -fsanitize=address,undefined)
  endif()
endif()

# tw_library(NAME LIBS lib..) - sources are added by target_sources() in the rooms' own lists.
function(tw_library name)
  cmake_parse_arguments(ARG "" "" "LIBS" ${ARGN})
  add_library(${name} STATIC)
  target_link_libraries(${name} PUBLIC ${ARG_LIBS} PRIVATE tw_flags)
endfunction()

# tw_test(NAME SOURCES file.. LIBS lib.. [DISPLAY]) - one QtTest program, run by ctest without a screen.
function(tw_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE tw_test_support ${ARG_LIBS} Qt6::Test tw_flags)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;${TW_TEST_ENVIRONMENT}")
endfunction()
