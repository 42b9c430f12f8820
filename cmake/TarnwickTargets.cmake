# How every target of this project is built: language level, warnings, sanitizers, tests.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOUIC ${TARNWICK_GUI})
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

get_property(chosen_when_building GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(NOT CMAKE_BUILD_TYPE AND NOT chosen_when_building)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Kind of build" FORCE)
endif()

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_compile_options(-Wall -Wextra -Wpedantic)
if(TARNWICK_WERROR)
  add_compile_options(-Werror)
endif()
if(TARNWICK_SANITIZE)
  add_compile_options(-fsanitize=${TARNWICK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${TARNWICK_SANITIZE})
endif()
# A sanitizer has its own checks, which these would hide or contradict.
if(TARNWICK_HARDENING AND NOT TARNWICK_SANITIZE AND CMAKE_SYSTEM_NAME STREQUAL "Linux")
  include(CheckPIESupported)
  check_pie_supported()
  add_compile_options(-fstack-protector-strong)
  # It needs an optimiser, and the compiler may have been built with a level of its own.
  add_compile_options($<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE>
                      $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
  add_link_options(LINKER:-z,relro,-z,now)
endif()
if(TARNWICK_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()

# tarnwick_library(<folder> SOURCES ... LINKS ...): the static library of one folder of src/. Inside,
# includes name their folder ("links/qlink.h"); a program that adds this tree to its own may leave the
# folder out.
function(tarnwick_library name)
  cmake_parse_arguments(LIB "" "" "SOURCES;LINKS" ${ARGN})
  add_library(tarnwick_${name} STATIC ${LIB_SOURCES})
  target_include_directories(tarnwick_${name}
    PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>
    INTERFACE $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}>)
  target_link_libraries(tarnwick_${name} PUBLIC ${LIB_LINKS})
endfunction()

add_custom_target(threaded_tests)

# tarnwick_test(<name> [THREADS] SOURCES ... LINKS ... [PROCESSORS n]): one test program. It runs on
# Qt's offscreen platform. THREADS marks the ones that ThreadSanitizer is to watch.
function(tarnwick_test name)
  cmake_parse_arguments(TEST "THREADS" "PROCESSORS" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE ${TEST_LINKS} tarnwick_testsupport GTest::gmock)
  if(NOT MSVC)
    # A test program takes twice as long to optimise as it takes to run. No optimiser, no fortified
    # calls.
    target_compile_options(${name} PRIVATE -O0 -U_FORTIFY_SOURCE)
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/tsan.supp second_deadlock_stack=1")
  if(TEST_THREADS)
    set_tests_properties(${name} PROPERTIES LABELS threads)
    add_dependencies(threaded_tests ${name})
  endif()
  if(TEST_PROCESSORS)
    set_tests_properties(${name} PROPERTIES PROCESSORS ${TEST_PROCESSORS})
  endif()
endfunction()
