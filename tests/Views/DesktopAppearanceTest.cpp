#include "Views/DesktopAppearance.h"

#include <QFontInfo>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QPalette>
#include <QRawFont>
#include <QSignalSpy>
#include <QTextLayout>
#include <gtest/gtest.h>

#include <tuple>

namespace Talvo {
namespace {

const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorScheme = QStringLiteral("color-scheme");
const QString accentColor = QStringLiteral("accent-color");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString animations = QStringLiteral("enable-animations");

/// The families whose letters a text is drawn with.
QStringList drawnFamilies(const QString &text, const QFont &font)
{
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    QStringList families;
    for (const QGlyphRun &run : layout.glyphRuns()) {
        families += run.rawFont().familyName();
    }
    return families;
}

class DesktopAppearanceTest : public testing::Test
{
protected:
    static void setPalette(const QColor &window, const QColor &text)
    {
        QPalette palette = QGuiApplication::palette();
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        QGuiApplication::setPalette(palette);
        QCoreApplication::processEvents();
    }

    void SetUp() override { setPalette(Qt::white, Qt::black); }
    void TearDown() override { setPalette(Qt::white, Qt::black); }

    DesktopAppearance desktop;
};

TEST_F(DesktopAppearanceTest, FollowsThePaletteWithoutAPortal)
{
    EXPECT_FALSE(desktop.isDark());
    QSignalSpy changed(&desktop, &DesktopAppearance::changed);
    setPalette(Qt::black, Qt::white);
    EXPECT_TRUE(desktop.isDark());
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(DesktopAppearanceTest, PrefersThePortal)
{
    desktop.take(appearance, colorScheme, 1u);
    EXPECT_TRUE(desktop.isDark());
    desktop.take(appearance, colorScheme, 2u);
    setPalette(Qt::black, Qt::white);
    EXPECT_FALSE(desktop.isDark());
    desktop.take(appearance, colorScheme, 0u);
    EXPECT_TRUE(desktop.isDark()) << "no preference leaves it to the palette";
}

TEST_F(DesktopAppearanceTest, TakesAccentAndMotion)
{
    EXPECT_FALSE(desktop.hasAccent());
    desktop.take(appearance, accentColor, QColor(Qt::green));
    EXPECT_EQ(desktop.accent(), QColor(Qt::green));
    desktop.take(appearance, accentColor, QColor());
    EXPECT_FALSE(desktop.hasAccent());

    desktop.take(gnome, animations, false);
    EXPECT_TRUE(desktop.isReducedMotion());
    desktop.take(gnome, animations, true);
    EXPECT_FALSE(desktop.isReducedMotion());
}

TEST_F(DesktopAppearanceTest, IgnoresWhatItDoesNotUnderstand)
{
    // From here on a setting that is taken back shows.
    desktop.take(appearance, colorScheme, 1u);
    desktop.take(appearance, accentColor, QColor(Qt::green));
    desktop.take(gnome, animations, false);
    const std::tuple<QString, QString, QVariant> settings[] = {
        {appearance, QStringLiteral("contrast"), 1u},
        {QStringLiteral("org.example"), colorScheme, 2u},
        {QStringLiteral("org.example"), accentColor, QColor(Qt::red)},
        {appearance, colorScheme, QStringLiteral("light")},
        {appearance, colorScheme, 2},
        {appearance, accentColor, QStringLiteral("red")},
        {appearance, accentColor, QVariant()},
        {appearance, animations, true},
        {gnome, colorScheme, 2u},
        {gnome, animations, QStringLiteral("no")},
        {gnome, animations, 1u},
        {gnome, animations, QVariant()},
    };
    for (const auto &[space, key, value] : settings) {
        const QSignalSpy changed(&desktop, &DesktopAppearance::changed);
        desktop.take(space, key, value);
        EXPECT_EQ(changed.count(), 0) << qPrintable(space + u' ' + key) << ' ' << value.typeName();
    }
}

TEST_F(DesktopAppearanceTest, TakesASchemeThatThereIsNotForNoPreference)
{
    desktop.take(appearance, colorScheme, 1u);
    desktop.take(appearance, colorScheme, 77u);
    EXPECT_FALSE(desktop.isDark()) << "the palette decides";
}

TEST_F(DesktopAppearanceTest, GivesTheApplicationFontInASizeAndAWeight)
{
    const QFont font = DesktopAppearance::font(17, QFont::DemiBold);
    EXPECT_EQ(font.pixelSize(), 17);
    EXPECT_EQ(font.weight(), QFont::DemiBold);
    EXPECT_EQ(QFontInfo(font).family(), QFontInfo(QGuiApplication::font()).family());
}

TEST_F(DesktopAppearanceTest, TheFontForEmojiDrawsNothingElse)
{
    const QFont font = DesktopAppearance::font(13, QFont::Normal);
    EXPECT_EQ(drawnFamilies(QStringLiteral("👩‍💻"), font),
              QStringList(QStringLiteral("Noto Color Emoji")));
    // Fonts for emoji have digits too.
    EXPECT_EQ(drawnFamilies(QStringLiteral("Çay 27 #*"), font),
              QStringList(QFontInfo(QGuiApplication::font()).family()));
}

} // namespace
} // namespace Talvo
