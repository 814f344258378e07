#include "Markdown/CmarkDocument.h"

#include "Markdown/CmarkArena.h"

#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm-extension_api.h>
#include <cmark-gfm.h>

#include <cstdlib>
#include <mutex>

namespace Talvo {

namespace {

void *arenaCalloc(std::size_t count, std::size_t size) noexcept
{
    return CmarkArena::ofThisThread().allocate(count * size);
}

void *arenaRealloc(void *old, std::size_t size) noexcept
{
    return CmarkArena::ofThisThread().reallocate(old, size);
}

void arenaFree(void *memory) noexcept
{
    CmarkArena::ofThisThread().release(memory);
}

/// noexcept on these three is meant: the library is C code that no exception may cross, and it
/// ends the process itself when its own allocator has no memory left.
cmark_mem arenaAllocator{arenaCalloc, arenaRealloc, arenaFree};

struct Extensions
{
    cmark_syntax_extension *strikethrough = nullptr;
    cmark_syntax_extension *autolink = nullptr;
};

Extensions registeredExtensions()
{
    cmark_gfm_core_extensions_ensure_registered();
    return {cmark_find_syntax_extension("strikethrough"), cmark_find_syntax_extension("autolink")};
}

/// The library adds the extensions' characters to a table of the whole process while it parses
/// inlines, and removes them afterwards: two parses at once would take them from each other. It
/// also needs their lists during the parse, so they cannot be entered once and for all.
std::mutex specialCharactersMutex;

} // namespace

CmarkDocument::CmarkDocument(std::string_view utf8)
{
    static const Extensions extensions = registeredExtensions();
    cmark_parser *parser = cmark_parser_new_with_mem(CMARK_OPT_DEFAULT, &arenaAllocator);
    cmark_parser_attach_syntax_extension(parser, extensions.strikethrough);
    cmark_parser_attach_syntax_extension(parser, extensions.autolink);
    cmark_parser_feed(parser, utf8.data(), utf8.size());
    // Feeding makes blocks and leaves the table alone; inlines are parsed by this call only.
    const std::lock_guard lock(specialCharactersMutex);
    m_root = cmark_parser_finish(parser);
}

CmarkDocument::~CmarkDocument()
{
    // The parser and the tree are in the arena and own nothing outside it.
    CmarkArena::ofThisThread().clear();
}

} // namespace Talvo
