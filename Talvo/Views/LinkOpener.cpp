#include "Views/LinkOpener.h"

#include "Platform/Text.h"

#include <QDesktopServices>

#include <algorithm>
#include <string>

namespace Talvo {

namespace {

constexpr qsizetype longestShown = 200;

/// Characters that show nothing, or change how their neighbours are shown.
bool isDeceptive(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Other_PrivateUse:
    case QChar::Other_NotAssigned:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

QString neutralised(const QString &text)
{
    std::u32string characters = text.toStdU32String();
    std::ranges::replace_if(characters, isDeceptive, char32_t{QChar::ReplacementCharacter});
    return QString::fromStdU32String(characters);
}

} // namespace

std::optional<QUrl> openableUrl(const QString &address)
{
    const QUrl url(address, QUrl::TolerantMode);
    if (!url.isValid()) {
        return std::nullopt;
    }
    const QString scheme = url.scheme();
    const bool isWeb = scheme == u"http" || scheme == u"https";
    if (isWeb && !url.host().isEmpty()) {
        return url;
    }
    if (scheme == u"mailto" && !url.path().isEmpty()) {
        return url;
    }
    return std::nullopt;
}

QString shownAddress(const QString &address)
{
    const std::optional<QUrl> url = openableUrl(address);
    QString shown = neutralised(url ? url->toString(QUrl::FullyEncoded) : address);
    if (shown.size() <= longestShown) {
        return shown;
    }
    return firstCodeUnits(shown, longestShown).toString() + u'…';
}

bool openLink(const QString &address)
{
    const std::optional<QUrl> url = openableUrl(address);
    return url && QDesktopServices::openUrl(*url);
}

} // namespace Talvo
