#pragma once

#include <string_view>

// The library's tree node, so that no header of this project needs the library's.
struct cmark_node;

namespace Talvo {

/// A parsed CommonMark document with strikethrough and bare links.
///
/// Any thread, several at once; one document at a time on each thread, whose tree ends with it.
class CmarkDocument
{
public:
    /// Parses a whole document of valid UTF-8.
    explicit CmarkDocument(std::string_view utf8);
    ~CmarkDocument();
    CmarkDocument(const CmarkDocument &) = delete;
    CmarkDocument &operator=(const CmarkDocument &) = delete;

    /// The document node.
    [[nodiscard]] cmark_node *root() const noexcept { return m_root; }

private:
    cmark_node *m_root = nullptr;
};

} // namespace Talvo
