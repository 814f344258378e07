#include "Platform/SystemErrorText.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <utility>

using namespace Talvo;

TEST(SystemErrorText, isTurkishForTheUsualOnes)
{
    const std::pair<int, const char *> cases[] = {
        {EACCES, "izin yok"},
        {EPERM, "izin yok"},
        {EBUSY, "dosya kullanımda"},
        {EEXIST, "aynı adda bir dosya var"},
        {EIO, "giriş/çıkış hatası"},
        {EMFILE, "çok fazla açık dosya var"},
        {ENFILE, "çok fazla açık dosya var"},
        {EMLINK, "dosyanın çok fazla adı var"},
        {ENOMEM, "bellek yetersiz"},
        {EOPNOTSUPP, "dosya sistemi desteklemiyor"},
        {EROFS, "salt okunur dosya sistemi"},
        {ESTALE, "ağ dosyası artık yok"},
        {ETIMEDOUT, "dosya sistemi yanıt vermiyor"},
        {EXDEV, "başka bir dosya sistemi"},
    };
    for (const auto &[systemError, text] : cases) {
        EXPECT_EQ(systemErrorText(systemError), QString::fromUtf8(text));
    }
    EXPECT_EQ(systemErrorText(EDOM), QStringLiteral("hata %1").arg(EDOM));
}

TEST(SystemErrorText, aFullDiskIsItsOwnFailure)
{
    for (const int systemError : {ENOSPC, EDQUOT}) {
        for (const auto failure :
             {PlatformFailure::archiveNotWritable, PlatformFailure::folderNotCreatable}) {
            EXPECT_EQ(fileError(failure, systemError).failure(), PlatformFailure::diskFull);
        }
    }
    const PlatformError other = fileError(PlatformFailure::archiveNotWritable, EIO);
    EXPECT_EQ(other.failure(), PlatformFailure::archiveNotWritable);
    EXPECT_EQ(other.localizedDescription(),
              QStringLiteral("Sohbet arşivi kaydedilemedi. (giriş/çıkış hatası)"));
}
