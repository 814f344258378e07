#include "Platform/LocalizedError.h"

#include <utility>

namespace Talvo {

LocalizedError::LocalizedError(QString description)
    : m_description(std::move(description))
    , m_utf8(m_description.toUtf8())
{
}

QString localizedDescription(const std::exception &error)
{
    const auto *localized = dynamic_cast<const LocalizedError *>(&error);
    return localized ? localized->localizedDescription()
                     : QStringLiteral("Beklenmeyen bir sorun oluştu.");
}

} // namespace Talvo
