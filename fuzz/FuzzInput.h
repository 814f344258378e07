#pragma once

#include <QString>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

/// Makes a text of a fuzzer's bytes. UTF-8, so that the corpus and dictionaries can be read.
inline QString textOfFuzzInput(const uint8_t *data, std::size_t size)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}

/// Ends the process, which a fuzzer takes for a finding, when a violation is named.
inline void failOn(const std::string &violation)
{
    if (!violation.empty()) {
        std::fprintf(stderr, "violated: %s\n", violation.c_str());
        std::abort();
    }
}
