# Shared build settings: warnings, sanitizers and test registration.

function(trotlet_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wno-missing-field-initializers)
  # GCC 12 at -O2 and above warns of overlapping copies inside std::string's own operator+ that
  # cannot happen (GCC bug 105329, fixed in 13); the warning says nothing about our code there.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  target_compile_definitions(${target} PRIVATE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
endfunction()

if(TROTLET_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()

# The fuzz build (preset `fuzz`): every library is instrumented for libFuzzer's coverage and
# checked by ASan and UBSan; only the fuzz targets link libFuzzer's main. Container bounds are
# checked too, since a read past size() but within capacity escapes ASan.
if(TROTLET_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "TROTLET_FUZZ needs clang (libFuzzer); use the `fuzz` preset")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer
                      -fno-sanitize-recover=undefined -D_GLIBCXX_ASSERTIONS)
  add_link_options(-fsanitize=address,undefined)
endif()

# trotlet_add_tests(<name> SOURCES <files...> [LIBS <targets...>])
# One GoogleTest executable per subsystem; each case becomes a CTest test with the
# subsystem as its label, so `ctest -L shop` runs one subsystem.
function(trotlet_add_tests name)
  if(NOT TROTLET_BUILD_TESTS)
    return()
  endif()
  cmake_parse_arguments(T "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  if(NOT T_LIBS)
    set(T_LIBS trotlet_core)
  endif()
  target_link_libraries(${name} PRIVATE ${T_LIBS} GTest::gtest GTest::gtest_main GTest::gmock)
  target_compile_definitions(${name} PRIVATE
    TROTLET_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
    TROTLET_BINARY="$<TARGET_FILE:trotlet>")
  trotlet_warnings(${name})
  # One variable only: a list here would be split into separate properties. The presets set
  # TZ and QT_QPA_PLATFORM for every test; tests that depend on them also set them themselves.
  gtest_discover_tests(${name}
    PROPERTIES LABELS ${name} ENVIRONMENT "LC_ALL=C.UTF-8"
    DISCOVERY_TIMEOUT 60)
endfunction()
