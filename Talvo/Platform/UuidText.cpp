#include "Platform/UuidText.h"

namespace Talvo {

QString uuidText(const QUuid &id)
{
    // The digits are ASCII: this upper-casing knows no locale.
    return id.toString(QUuid::WithoutBraces).toUpper();
}

std::optional<QUuid> uuidFromText(QByteArrayView text)
{
    constexpr qsizetype canonicalLength = 36;
    if (text.size() != canonicalLength) {
        return std::nullopt;
    }
    for (qsizetype i = 0; i < canonicalLength; ++i) {
        const char c = text[i];
        const bool isDash = i == 8 || i == 13 || i == 18 || i == 23;
        const bool isHexDigit =
            (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
        if (isDash ? c != '-' : !isHexDigit) {
            return std::nullopt;
        }
    }
    return QUuid::fromString(QLatin1StringView(text.data(), text.size()));
}

} // namespace Talvo
