# Flags of every target of this project: warnings are errors, strict Qt, hardening, sanitizers.

add_library(TalvoOptions INTERFACE)

target_compile_options(TalvoOptions INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

# Text goes through QStringLiteral, u"" or QString::fromUtf8, so that no encoding is guessed;
# without the short keywords (signals, slots, emit) the headers of C libraries can be included.
target_compile_definitions(TalvoOptions INTERFACE
    QT_NO_KEYWORDS
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_FOREACH)

if(CMAKE_BUILD_TYPE STREQUAL "Release")
    target_compile_definitions(TalvoOptions INTERFACE QT_NO_DEBUG_OUTPUT QT_NO_INFO_OUTPUT)
endif()

# Hardening of what users get.
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT APPLE AND NOT TALVO_SANITIZE)
    target_compile_options(TalvoOptions INTERFACE
        -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong -fstack-clash-protection)
    if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
        target_compile_options(TalvoOptions INTERFACE -fcf-protection)
    endif()
    target_link_options(TalvoOptions INTERFACE
        -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,--as-needed -Wl,-O1)
endif()

if(TALVO_SANITIZE)
    target_compile_options(TalvoOptions INTERFACE
        -fsanitize=${TALVO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(TalvoOptions INTERFACE -fsanitize=${TALVO_SANITIZE})
    # gcc 12 sees uninitialised values in coroutine frames and std::variant that are not there
    # as soon as the sanitizers' instrumentation is in.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(TalvoOptions INTERFACE -Wno-maybe-uninitialized)
        # ThreadSanitizer does not follow fences and says so wherever a header has one.
        if(TALVO_SANITIZE MATCHES "thread")
            target_compile_options(TalvoOptions INTERFACE -Wno-tsan)
        endif()
    endif()
endif()

# Where a target's files are read as one source, gcc takes each for a header, and a type of its own
# for one that differs from source to source.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(TalvoOptions INTERFACE
        $<$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>:-Wno-subobject-linkage>)
endif()

# clang 14 takes the libstdc++ headers' coroutines only when told that they are the final ones.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 15)
    target_compile_options(TalvoOptions INTERFACE -fcoroutines-ts -Wno-deprecated-coroutine)
endif()
