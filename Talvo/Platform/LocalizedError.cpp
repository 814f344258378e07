#include "Platform/LocalizedError.h"

#include <utility>

namespace Talvo {

LocalizedError::LocalizedError(QString description)
    : m_description(std::move(description))
    , m_utf8(m_description.toUtf8())
{
}

} // namespace Talvo
