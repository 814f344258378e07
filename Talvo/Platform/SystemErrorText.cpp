#include "Platform/SystemErrorText.h"

#include <cerrno>

namespace Talvo {

QString systemErrorText(int systemError)
{
    switch (systemError) {
    case EACCES:
    case EPERM:
        return QStringLiteral("izin yok");
    case EBUSY:
        return QStringLiteral("dosya kullanımda");
    case EDQUOT:
        return QStringLiteral("kota doldu");
    case EEXIST:
        return QStringLiteral("aynı adda bir dosya var");
    case EFBIG:
        return QStringLiteral("dosya çok büyük");
    case EIO:
        return QStringLiteral("giriş/çıkış hatası");
    case EISDIR:
        return QStringLiteral("dosya yerine bir klasör var");
    case ELOOP:
        return QStringLiteral("sembolik bağlantılar çözülemiyor");
    case EMFILE:
    case ENFILE:
        return QStringLiteral("çok fazla açık dosya var");
    case EMLINK:
        return QStringLiteral("dosyanın çok fazla adı var");
    case ENAMETOOLONG:
        return QStringLiteral("dosya yolu çok uzun");
    case ENOENT:
        return QStringLiteral("dosya ya da klasör yok");
    case ENOMEM:
        return QStringLiteral("bellek yetersiz");
    case ENOSPC:
        return QStringLiteral("diskte yer yok");
    case ENOTDIR:
        return QStringLiteral("klasör yerine bir dosya var");
    case EOPNOTSUPP:
        return QStringLiteral("dosya sistemi desteklemiyor");
    case EROFS:
        return QStringLiteral("salt okunur dosya sistemi");
    case ESTALE:
        return QStringLiteral("ağ dosyası artık yok");
    case ETIMEDOUT:
        return QStringLiteral("dosya sistemi yanıt vermiyor");
    case EXDEV:
        return QStringLiteral("başka bir dosya sistemi");
    default:
        return QStringLiteral("hata %1").arg(systemError);
    }
}

PlatformError fileError(PlatformFailure failure, int systemError)
{
    const bool isFull = systemError == ENOSPC || systemError == EDQUOT;
    return PlatformError(isFull ? PlatformFailure::diskFull : failure,
                         systemErrorText(systemError));
}

} // namespace Talvo
