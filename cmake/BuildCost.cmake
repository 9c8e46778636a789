# What a build tree costs to make, kept apart from what it builds. `make test` builds five
# trees on two cores; each saving here is paid back on every run.

# The test trees keep line tables only: enough for the sanitizers' reports and for Wine's
# backtraces (function, file, line), while full debug information doubles the objects and
# makes every static link of the Windows test programs read it all again.
if(IW_TESTS AND CMAKE_BUILD_TYPE STREQUAL "RelWithDebInfo")
  foreach(lang C CXX)
    string(REGEX REPLACE "(^| )-g( |$)" "\\1-g1\\2" CMAKE_${lang}_FLAGS_RELWITHDEBINFO
           "${CMAKE_${lang}_FLAGS_RELWITHDEBINFO}")
    # The sanitizers' own advice: -O1 keeps their reports exact (no frames folded away) and
    # compiles faster than -O2; the checks themselves don't depend on the level.
    if(IW_SANITIZE OR IW_TSAN)
      string(REGEX REPLACE "(^| )-O[23s]( |$)" "\\1-O1\\2" CMAKE_${lang}_FLAGS_RELWITHDEBINFO
             "${CMAKE_${lang}_FLAGS_RELWITHDEBINFO}")
    endif()
  endforeach()
endif()

# The Windows test tree links some forty statically linked programs; LLVM's linker does each
# in a fraction of GNU ld's time. The release tree keeps GNU ld, whose time stamp handling
# (SOURCE_DATE_EPOCH) the reproducible build relies on.
if(MINGW AND IW_TESTS AND NOT IW_REPRODUCIBLE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  find_program(IW_LLD ld.lld)
  if(IW_LLD)
    add_link_options(-fuse-ld=lld)
  endif()
endif()

# The ThreadSanitizer tree runs only the tests written to race (core_tests_concurrency): it
# compiles only the test files that have such tests, found by their names.
function(iw_keep_concurrency_tests var)
  set(kept)
  foreach(file ${${var}})
    file(STRINGS ${file} races REGEX "TEST(_F|_P)?\\([A-Za-z0-9_]*Concurrent|TEST(_F|_P)?\\([^,]*, *[A-Za-z0-9_]*Concurrent")
    if(races)
      list(APPEND kept ${file})
    endif()
  endforeach()
  if(kept)
    set(${var} ${kept} PARENT_SCOPE)
  endif()
endfunction()

# GoogleTest's header parsed once for a test program instead of once for each of its files:
# worth it where a program has many files (the native core_tests; not the ThreadSanitizer
# tree's one or two).
function(iw_share_test_headers target)
  get_target_property(sources ${target} SOURCES)
  list(LENGTH sources count)
  if(count GREATER 8 AND NOT CMAKE_UNITY_BUILD)
    target_precompile_headers(${target} PRIVATE <gtest/gtest.h> <string> <vector>)
  endif()
endfunction()
