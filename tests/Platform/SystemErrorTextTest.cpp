#include "Platform/SystemErrorText.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace Talvo;

TEST(SystemErrorText, isTurkishForTheUsualOnes)
{
    EXPECT_EQ(systemErrorText(EACCES), QStringLiteral("izin yok"));
    EXPECT_EQ(systemErrorText(EROFS), QStringLiteral("salt okunur dosya sistemi"));
    EXPECT_EQ(systemErrorText(EMFILE), QStringLiteral("çok fazla açık dosya var"));
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
