#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "Markdown/InlineMarkdown.h"
#include "Markdown/MarkdownProperties.h"

using namespace Talvo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = textOfFuzzInput(data, size);
    const AttributedString result = inlineText(text);
    failOn(violation(result, text));
    failOn(inlineText(text) == result ? "" : "a second call gives another result");
    return 0;
}
