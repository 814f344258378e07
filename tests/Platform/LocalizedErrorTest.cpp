#include "Platform/PlatformError.h"

#include <QtConcurrent>
#include <gtest/gtest.h>

using namespace Talvo;

TEST(LocalizedError, crossesAWorkerThreadWithItsType)
{
    QFuture<void> future = QtConcurrent::run(
        [] { throw PlatformError(PlatformFailure::timedOut, QStringLiteral("60 s")); });
    try {
        future.waitForFinished();
        FAIL() << "nothing was thrown";
    } catch (const PlatformError &error) {
        EXPECT_EQ(error.failure(), PlatformFailure::timedOut);
        EXPECT_EQ(error.localizedDescription(),
                  QStringLiteral("İstek zaman aşımına uğradı. (60 s)"));
    }
}

TEST(LocalizedError, everyFailureIsASentence)
{
    for (int i = 0; i <= static_cast<int>(PlatformFailure::folderNotCreatable); ++i) {
        const QString text = platformFailureText(static_cast<PlatformFailure>(i));
        EXPECT_TRUE(text.endsWith(u'.')) << qPrintable(text);
    }
}
