# talvo_library(<folder> SOURCES ... LINKS ...)
#
# One static library for one folder of Talvo/, named Talvo<folder>. LINKS are the floors below that
# its headers need. Includes are written from Talvo/ on: "Chat/ChatArchive.h".
function(talvo_library folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS;PRIVATE_LINKS")
    add_library(Talvo${folder} STATIC ${arg_SOURCES})
    target_include_directories(Talvo${folder} PUBLIC "${PROJECT_SOURCE_DIR}/Talvo")
    target_link_libraries(Talvo${folder}
        PUBLIC ${arg_LINKS}
        PRIVATE ${arg_PRIVATE_LINKS} TalvoOptions)
endfunction()

# talvo_test(<name> SOURCES ... LINKS ... [LABELS ...])
#
# A GoogleTest executable with a running QCoreApplication, registered with ctest under <name>.
function(talvo_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS;LABELS")
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE TalvoTestMain ${arg_LINKS} TalvoOptions)
    set_target_properties(${name} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    # What every test reads; a third of the time that they take to compile. One source reads it once.
    if(NOT CMAKE_UNITY_BUILD)
        target_precompile_headers(${name} PRIVATE
            <gtest/gtest.h> <QCoreApplication> <QString> <QVariant> <chrono> <functional> <memory> <optional> <vector>)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS "${arg_LABELS}")
endfunction()
