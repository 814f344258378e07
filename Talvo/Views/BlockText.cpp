#include "Views/BlockText.h"

#include <utility>

namespace Talvo {

BlockText::BlockText(std::shared_ptr<const AttributedString> text)
    : m_text(std::move(text))
{
}

} // namespace Talvo
