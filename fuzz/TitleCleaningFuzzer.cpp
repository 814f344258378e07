#include "Controller/TitleCleaning.h"
#include "FuzzInput.h"
#include "FuzzTarget.h"

using namespace Talvo;

/// Whatever the service answers to the request for a title becomes one line without markup.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString cleaned = cleanTitle(textOfFuzzInput(data, size));
    failOn(cleaned.isValidUtf16() ? "" : "half a surrogate pair");
    failOn(cleaned.contains(u'\n') || cleaned.contains(u'\r') ? "a line break" : "");
    failOn(cleaned == cleaned.trimmed() ? "" : "white space at an end");
    const QString stored = storedTitle(cleaned);
    failOn(cleaned.startsWith(stored) ? "" : "the stored title is no beginning of the cleaned one");
    failOn(stored.isEmpty() == cleaned.isEmpty() ? "" : "only one of both is empty");
    return 0;
}
