#include "Platform/UuidText.h"

#include <gtest/gtest.h>

using namespace Talvo;

TEST(UuidText, isUpperCaseAndReadsInEitherCase)
{
    const auto id = uuidFromText("7c9e6679-7425-40de-944b-e07fc1f90ae7");
    ASSERT_TRUE(id);
    EXPECT_EQ(uuidText(*id), QStringLiteral("7C9E6679-7425-40DE-944B-E07FC1F90AE7"));
    EXPECT_EQ(uuidFromText("7C9E6679-7425-40DE-944B-E07FC1F90AE7"), id);
}

TEST(UuidText, refusesEverythingElse)
{
    for (const char *text :
         {"", "{7C9E6679-7425-40DE-944B-E07FC1F90AE7}", "7C9E6679742540DE944BE07FC1F90AE7",
          "7C9E6679-7425-40DE-944B-E07FC1F90AEG", "7C9E6679-7425-40DE-944B-E07FC1F90AE",
          "7C9E6679-7425-40DE-944BE-07FC1F90AE7", "7C9E6679-7425-40DE-944B-E07FC1F90AE7 "}) {
        EXPECT_FALSE(uuidFromText(text)) << text;
    }
}

TEST(UuidText, readsTheNilIdentifier)
{
    EXPECT_EQ(uuidFromText("00000000-0000-0000-0000-000000000000"), QUuid());
}

TEST(UuidText, agreesWithTheLibraryForEveryDigit)
{
    for (int round = 0; round < 1000; ++round) {
        const QUuid id = QUuid::createUuid();
        const QString expected = id.toString(QUuid::WithoutBraces).toUpper();
        EXPECT_EQ(uuidText(id), expected);
        EXPECT_EQ(QByteArrayView(asciiUuidText(id)), expected.toLatin1());
        EXPECT_EQ(uuidFromText(expected.toLatin1()), id);
    }
}
