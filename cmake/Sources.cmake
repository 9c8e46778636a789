# Sources are found by folder rather than listed, so that adding a class is adding its files:
#   src/<area>/*.cpp         portable code: builds natively and for Windows, never <windows.h>
#   src/<area>/win/*.cpp     Windows-only code
#   tests/<area>/*.cpp       tests of portable code (run natively and under Wine)
#   tests/<area>/win/*.cpp   tests of Windows-only code (run under Wine)
function(iw_collect out pattern)
  set(result)
  foreach(area ${IW_AREAS})
    string(REPLACE "<area>" "${area}" p "${pattern}")
    file(GLOB found CONFIGURE_DEPENDS ${p})
    list(APPEND result ${found})
  endforeach()
  set(${out} ${result} PARENT_SCOPE)
endfunction()

# Registers a Windows program as one CTest entry run under Wine through the wrapper that
# kills it after `timeout` seconds and reports which windows were open then.
function(iw_add_wine_test name target)
  cmake_parse_arguments(T "" "TIMEOUT" "ARGS;LOCKS;LABELS" ${ARGN})
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT ${IW_TEST_TIMEOUT})
  endif()
  math(EXPR ctest_timeout "${T_TIMEOUT} + 60")
  add_test(NAME ${name}
           COMMAND ${CMAKE_SOURCE_DIR}/scripts/wine-test.sh ${T_TIMEOUT} $<TARGET_FILE:${target}> ${T_ARGS})
  set_tests_properties(${name} PROPERTIES
    TIMEOUT ${ctest_timeout}
    ENVIRONMENT "IW_WINEPREFIX=${IW_WINEPREFIX};WINEPREFIX=${IW_WINEPREFIX};IW_BIN_DIR=${CMAKE_BINARY_DIR}/bin"
    LABELS "wine;${T_LABELS}")
  if(T_LOCKS)
    set_tests_properties(${name} PROPERTIES RESOURCE_LOCK "${T_LOCKS}")
  endif()
endfunction()
