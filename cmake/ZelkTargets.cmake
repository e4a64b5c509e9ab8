# The house's way of making libraries and tests, so that every target gets the same language, warnings and definitions.

add_library(zelk_options INTERFACE)
target_compile_definitions(zelk_options INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_URL_CAST_FROM_STRING)
target_compile_options(zelk_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Optimising, g++ 12 sees uninitialised members in every std::variant that is moved from.
    target_compile_options(zelk_options INTERFACE -Wno-maybe-uninitialized)
endif()
if(ZELK_WERROR)
    target_compile_options(zelk_options INTERFACE -Werror)
endif()
if(ZELK_SANITIZE)
    add_compile_options(-fsanitize=${ZELK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${ZELK_SANITIZE})
endif()

# What the sanitizers need to know at run time: where they find function names, and which libraries leak on purpose.
set(zelk_test_environment "")
set(zelk_test_launcher "")
if(ZELK_SANITIZE)
    set(suppressions "${PROJECT_SOURCE_DIR}/tests/sanitizers")
    set(zelk_test_environment
        "ASAN_OPTIONS=strict_string_checks=1"
        "LSAN_OPTIONS=suppressions=${suppressions}/lsan.supp:print_suppressions=0"
        "UBSAN_OPTIONS=print_stacktrace=1"
        "TSAN_OPTIONS=suppressions=${suppressions}/tsan.supp:halt_on_error=1:second_deadlock_stack=1")
    find_program(ZELK_SYMBOLIZER llvm-symbolizer HINTS /usr/lib/llvm-16/bin)
    if(ZELK_SYMBOLIZER)
        foreach(sanitizer ASAN LSAN UBSAN TSAN)
            list(APPEND zelk_test_environment "${sanitizer}_SYMBOLIZER_PATH=${ZELK_SYMBOLIZER}")
        endforeach()
    endif()
    if(ZELK_SANITIZE STREQUAL "thread")
        # Its shadow memory collides with the kernel's wide address randomisation.
        set(zelk_test_launcher setarch -R)
    endif()
endif()

# zelk_library(<name> SOURCES ... LINKS ...): the library zelk_<name>, known to others as zelk::<name>.
# Headers are included by their path under src/, as in "Transport/JSONValue.h".
function(zelk_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
    add_library(zelk_${name} STATIC ${arg_SOURCES})
    add_library(zelk::${name} ALIAS zelk_${name})
    target_include_directories(zelk_${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(zelk_${name} PUBLIC zelk_options ${arg_LINKS})
endfunction()

# zelk_test(<name> SOURCES ... LINKS ...): a Qt Test program that ctest runs under its name, with a throw-away home,
# no display and no session bus, so that no test depends on or touches the machine of whoever runs it.
function(zelk_test name)
    cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LINKS;DEFINITIONS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_compile_definitions(${name} PRIVATE ${arg_DEFINITIONS})
    target_link_libraries(${name} PRIVATE zelk_options ${arg_LINKS} Qt6::Test)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests/bin")
    if(ZELK_SANITIZE STREQUAL "thread")
        target_sources(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests/sanitizers/QtOrder.cpp")
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
        if(ZELK_SANITIZE)
            # A window's test takes most of a minute there with the machine to itself.
            set(arg_TIMEOUT 300)
        endif()
    endif()
    add_test(NAME ${name} COMMAND ${zelk_test_launcher} "${PROJECT_SOURCE_DIR}/tests/run-isolated" $<TARGET_FILE:${name}>)
    cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY "${PROJECT_SOURCE_DIR}/tests" OUTPUT_VARIABLE folder)
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${arg_TIMEOUT} LABELS "${folder}" ENVIRONMENT "${zelk_test_environment}")
endfunction()
