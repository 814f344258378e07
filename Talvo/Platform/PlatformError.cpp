#include "Platform/PlatformError.h"

namespace Talvo {

namespace {

QString described(PlatformFailure failure, const QString &detail)
{
    const QString text = platformFailureText(failure);
    return detail.isEmpty() ? text : text + QStringLiteral(" (%1)").arg(detail);
}

} // namespace

PlatformError::PlatformError(PlatformFailure failure, const QString &detail)
    : TypedError(described(failure, detail))
    , m_failure(failure)
{
}

PlatformError::PlatformError(PlatformFailure failure, const Described &text)
    : TypedError(text.description)
    , m_failure(failure)
{
}

PlatformError PlatformError::withAdvice(const QString &sentence) const
{
    return {m_failure, Described{localizedDescription() + u' ' + sentence}};
}

QString platformFailureText(PlatformFailure failure)
{
    switch (failure) {
    case PlatformFailure::noConnection:
        return QStringLiteral(
            "İnternet bağlantısı kurulamadı. Bağlantını kontrol edip yeniden dene.");
    case PlatformFailure::connectionRefused:
        return QStringLiteral(
            "Sunucuya bağlanılamadı: bağlantı reddedildi. Biraz sonra yeniden dene.");
    case PlatformFailure::connectionLost:
        return QStringLiteral("Yanıt alınırken bağlantı koptu. Yeniden dene.");
    case PlatformFailure::timedOut:
        return QStringLiteral("İstek zaman aşımına uğradı.");
    case PlatformFailure::tlsFailure:
        return QStringLiteral("Sunucuyla güvenli bağlantı kurulamadı.");
    case PlatformFailure::replyTooLarge:
        return QStringLiteral("Sunucunun yanıtı çok büyük olduğu için alınmadı.");
    case PlatformFailure::requestNotSendable:
        return QStringLiteral("İstek gönderilemedi.");
    case PlatformFailure::requestCancelled:
        return QStringLiteral("İstek iptal edildi.");
    case PlatformFailure::networkFailure:
        return QStringLiteral("Ağ bağlantısında bir sorun oluştu. Yeniden dene.");
    case PlatformFailure::replyNotDecodable:
        return QStringLiteral("Sunucunun yanıtı çözümlenemedi.");
    case PlatformFailure::archiveNotReadable:
        return QStringLiteral("Sohbet arşivi okunamadı: dosya açılamıyor.");
    case PlatformFailure::archiveNotValid:
        return QStringLiteral("Sohbet arşivi okunamadı: dosya geçerli bir arşiv değil.");
    case PlatformFailure::archiveNotWritable:
        return QStringLiteral("Sohbet arşivi kaydedilemedi.");
    case PlatformFailure::archiveNotKept:
        return QStringLiteral("Sohbet arşivi kaydedilmedi: okunamayan eski dosyanın bir kopyası "
                              "saklanamadı.");
    case PlatformFailure::diskFull:
        return QStringLiteral(
            "Sohbet arşivi kaydedilemedi: diskte yer kalmadı. Yer açıp yeniden dene.");
    case PlatformFailure::folderNotCreatable:
        return QStringLiteral("Sohbet arşivinin klasörü oluşturulamadı.");
    }
    Q_UNREACHABLE();
}

} // namespace Talvo
