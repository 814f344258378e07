#pragma once

#include "Markdown/MarkdownBlock.h"

#include <memory>

namespace Talvo {

/// A piece of inline text of a parsed reply, as views hand it on: a handle that shares the parse
/// result instead of copying it. Immutable, any thread.
class BlockText
{
public:
    /// @param text never null; usually aliases the whole parse result.
    explicit BlockText(std::shared_ptr<const AttributedString> text);

    /// The text with its runs.
    [[nodiscard]] const AttributedString &value() const { return *m_text; }
    /// What the user sees, without any markup.
    [[nodiscard]] QString plain() const { return value().text; }

    /// Equal when both share the same piece of the same parse result.
    friend bool operator==(const BlockText &, const BlockText &) = default;

private:
    std::shared_ptr<const AttributedString> m_text;
};

} // namespace Talvo
