#include "Chat/ChatArchiveCoding.h"
#include "FuzzTarget.h"
#include "Platform/PlatformError.h"
#include "standins/InMemoryFile.h"

#include <cstdlib>
#include <optional>

using namespace Talvo;

namespace {

/// Read in parts of a size, or as a whole for a size of 0.
std::optional<ChatArchive> decoded(const QByteArray &document, qsizetype partSize)
{
    try {
        return partSize > 0 ? decodeArchive(InMemoryFile(document), partSize)
                            : decodeArchive(document);
    } catch (const PlatformError &error) {
        if (error.failure() != PlatformFailure::archiveNotValid) {
            std::abort();
        }
        return std::nullopt;
    }
}

} // namespace

/// Whatever the bytes are, they are read or refused, the same however they are divided; what was
/// read survives another round, and its bytes are the same ever after.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto archive = decoded(input, 0);
    if (decoded(input, 1) != archive) {
        std::abort();
    }
    if (!archive) {
        return 0;
    }
    const QByteArray document = encodeArchive(*archive);
    const auto again = decoded(document, 1);
    if (again != archive || encodeArchive(*again) != document) {
        std::abort();
    }
    return 0;
}
