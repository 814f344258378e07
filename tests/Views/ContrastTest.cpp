#include "Views/Contrast.h"

#include <gtest/gtest.h>

namespace Talvo {
namespace {

TEST(Contrast, HasTheKnownRatios)
{
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21.0, 0.01);
    EXPECT_NEAR(contrastRatio(Qt::white, Qt::black), 21.0, 0.01);
    EXPECT_NEAR(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
    EXPECT_DOUBLE_EQ(contrastRatio(Qt::red, Qt::red), 1.0);
}

TEST(Contrast, BlendsByAlpha)
{
    EXPECT_EQ(blended(QColor(0, 0, 0, 0), Qt::white).rgb(), QColor(Qt::white).rgb());
    EXPECT_EQ(blended(QColor(0, 0, 0, 255), Qt::white).rgb(), QColor(Qt::black).rgb());
    EXPECT_NEAR(blended(QColor(0, 0, 0, 51), Qt::white).red(), 204, 1);
}

TEST(Contrast, LeavesReadableColoursAlone)
{
    const QColor blue(0x2a, 0x66, 0xdc);
    EXPECT_EQ(readable(blue, Qt::white, 4.5).rgb(), blue.rgb());
}

TEST(Contrast, MakesEveryAccentReadableOnBothAppearances)
{
    for (int hue = 0; hue < 360; hue += 15) {
        const QColor accent = QColor::fromHsv(hue, 200, 230);
        for (const QColor &background : {QColor(Qt::white), QColor(0x1b, 0x1c, 0x20)}) {
            const QColor result = readable(accent, background, 4.5);
            EXPECT_GE(contrastRatio(result, background), 4.5) << hue;
        }
    }
}

} // namespace
} // namespace Talvo
