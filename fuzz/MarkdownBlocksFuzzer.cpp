#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "Markdown/MarkdownBlockParser.h"
#include "Markdown/MarkdownProperties.h"

using namespace Talvo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = textOfFuzzInput(data, size);
    const auto blocks = parseBlocks(text);
    failOn(violation(blocks, text));
    failOn(parseBlocks(text) == blocks ? "" : "a second parse gives another result");
    return 0;
}
