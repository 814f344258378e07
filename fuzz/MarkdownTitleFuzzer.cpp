#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "Markdown/MarkdownTitle.h"

using namespace Talvo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = textOfFuzzInput(data, size);
    const auto visible = visibleMarkdownText(text);
    failOn(visible.has_value() ? "" : "no result");
    failOn(visible->isValidUtf16() ? "" : "half a surrogate pair");
    failOn(visible->contains(QChar(u'\0')) ? "a NUL" : "");
    // Separators take the place of characters of the source; entities only get shorter.
    failOn(visible->size() <= 2 * text.size() ? "" : "longer than its source can make it");
    failOn(visibleMarkdownText(text) == visible ? "" : "a second call gives another result");
    return 0;
}
