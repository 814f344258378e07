# talvo_fuzz_target(<name> SOURCES ... LINKS ... CORPUS <folder>)
#
# One fuzz target: SOURCES define LLVMFuzzerTestOneInput, CORPUS is a folder of inputs worth keeping.
#
# Every build has <name>Replay, which runs the corpus once and is registered with ctest as
# Fuzz.<name>.replay. With TALVO_FUZZ (clang) there is also <name>Fuzzer, a libFuzzer executable with
# AddressSanitizer and UndefinedBehaviorSanitizer, for which the project's libraries among LINKS
# and everything below them are compiled a second time with instrumentation:
#     build/fuzz/fuzz/<name>Fuzzer -dict=fuzz/<file>.dict <scratch folder> <corpus folder>

set(TALVO_FUZZ_SANITIZERS address,undefined)
# clang 14 writes no valid code for coroutines with the check of function types.
set(TALVO_FUZZ_CHECKS -fno-sanitize-recover=all -fno-sanitize=function)

# The instrumented twin of a library of this project, made when first asked for; any other library
# as it is.
function(talvo_instrumented library result)
    set(${result} ${library} PARENT_SCOPE)
    if(NOT library MATCHES "^Talvo" OR NOT TARGET ${library})
        return()
    endif()
    get_target_property(type ${library} TYPE)
    if(NOT type STREQUAL "STATIC_LIBRARY")
        return()
    endif()
    set(twin ${library}Instrumented)
    set(${result} ${twin} PARENT_SCOPE)
    if(TARGET ${twin})
        return()
    endif()
    get_target_property(sources ${library} SOURCES)
    get_target_property(folder ${library} SOURCE_DIR)
    get_target_property(includes ${library} INCLUDE_DIRECTORIES)
    get_target_property(links ${library} LINK_LIBRARIES)
    list(TRANSFORM sources PREPEND "${folder}/" REGEX "^[^/]")
    add_library(${twin} STATIC ${sources})
    target_include_directories(${twin} PUBLIC ${includes})
    target_compile_options(${twin} PRIVATE
        -fsanitize=fuzzer-no-link,${TALVO_FUZZ_SANITIZERS} ${TALVO_FUZZ_CHECKS} -g -O1)
    foreach(link IN LISTS links)
        talvo_instrumented(${link} linked)
        target_link_libraries(${twin} PUBLIC ${linked})
    endforeach()
endfunction()

function(talvo_fuzz_target name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "CORPUS" "SOURCES;LINKS")
    add_executable(${name}Replay ${arg_SOURCES} ReplayMain.cpp)
    target_include_directories(${name}Replay PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name}Replay PRIVATE ${arg_LINKS} TalvoOptions)
    set_target_properties(${name}Replay PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    add_test(NAME Fuzz.${name}.replay
        COMMAND ${name}Replay "${CMAKE_CURRENT_SOURCE_DIR}/${arg_CORPUS}")

    if(NOT TALVO_FUZZ)
        return()
    endif()
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "TALVO_FUZZ needs clang (preset fuzz)")
    endif()
    add_executable(${name}Fuzzer ${arg_SOURCES})
    target_include_directories(${name}Fuzzer PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_compile_options(${name}Fuzzer PRIVATE
        -fsanitize=fuzzer,${TALVO_FUZZ_SANITIZERS} ${TALVO_FUZZ_CHECKS} -g -O1)
    target_link_options(${name}Fuzzer PRIVATE -fsanitize=fuzzer,${TALVO_FUZZ_SANITIZERS})
    target_link_libraries(${name}Fuzzer PRIVATE TalvoOptions)
    foreach(link IN LISTS arg_LINKS)
        talvo_instrumented(${link} linked)
        target_link_libraries(${name}Fuzzer PRIVATE ${linked})
    endforeach()
    set_target_properties(${name}Fuzzer PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/fuzz")
endfunction()
