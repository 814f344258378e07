#include "Views/DesktopAppearance.h"

#include "Views/Contrast.h"
#include "Views/SettingsPortal.h"

#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QPalette>

namespace Talvo {

namespace {

/// The family of the application font and one for emoji, where there is one that is known.
///
/// By its own name: behind a generic one like "Sans Serif" the other family would come first.
const QStringList &textFamilies()
{
    static const QStringList families = [] {
        const QString emoji = QStringLiteral("Noto Color Emoji");
        QStringList result{QFontInfo(QGuiApplication::font()).family()};
        if (QFontDatabase::hasFamily(emoji)) {
            result += emoji;
        }
        return result;
    }();
    return families;
}

} // namespace

DesktopAppearance::DesktopAppearance(QObject *parent)
    : QObject(parent)
{
    followPalette();
    // The palette's change reaches the application object as an event, not as a signal.
    qGuiApp->installEventFilter(this);
    auto *portal = new SettingsPortal(this);
    connect(portal, &SettingsPortal::setting, this, &DesktopAppearance::take);
    portal->start();
}

int DesktopAppearance::bodyPixelSize()
{
    return QFontInfo(QGuiApplication::font()).pixelSize();
}

QFont DesktopAppearance::font(int pixelSize, int weight)
{
    QFont font;
    font.setFamilies(textFamilies());
    font.setPixelSize(pixelSize);
    font.setWeight(QFont::Weight(weight));
    return font;
}

QString DesktopAppearance::fixedFamily()
{
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}

QColor DesktopAppearance::readable(const QColor &colour, const QColor &background, double ratio)
{
    return Talvo::readable(colour, background, ratio);
}

double DesktopAppearance::contrastRatio(const QColor &one, const QColor &other)
{
    return Talvo::contrastRatio(one, other);
}

QColor DesktopAppearance::blended(const QColor &top, const QColor &bottom)
{
    return Talvo::blended(top, bottom);
}

void DesktopAppearance::take(const QString &space, const QString &key, const QVariant &value)
{
    if (space == u"org.freedesktop.appearance" && key == u"color-scheme" &&
        value.metaType() == QMetaType::fromType<uint>()) {
        // 0 states no preference, 1 dark, 2 light.
        const uint scheme = value.toUInt();
        m_schemeKnown = scheme == 1 || scheme == 2;
        if (m_schemeKnown) {
            update(scheme == 1, m_accent, m_reducedMotion);
        } else {
            followPalette();
        }
    }
    // An invalid colour says that there is none.
    if (space == u"org.freedesktop.appearance" && key == u"accent-color" &&
        value.metaType() == QMetaType::fromType<QColor>()) {
        update(m_dark, value.value<QColor>(), m_reducedMotion);
    }
    if (space == u"org.gnome.desktop.interface" && key == u"enable-animations" &&
        value.metaType() == QMetaType::fromType<bool>()) {
        update(m_dark, m_accent, !value.toBool());
    }
}

bool DesktopAppearance::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qGuiApp && event->type() == QEvent::ApplicationPaletteChange) {
        followPalette();
    }
    return QObject::eventFilter(watched, event);
}

void DesktopAppearance::followPalette()
{
    if (m_schemeKnown) {
        return;
    }
    const QPalette palette = QGuiApplication::palette();
    const bool isDark = palette.color(QPalette::Window).lightness() <
                        palette.color(QPalette::WindowText).lightness();
    update(isDark, m_accent, m_reducedMotion);
}

void DesktopAppearance::update(bool dark, const QColor &accent, bool reducedMotion)
{
    if (m_dark == dark && m_accent == accent && m_reducedMotion == reducedMotion) {
        return;
    }
    m_dark = dark;
    m_accent = accent;
    m_reducedMotion = reducedMotion;
    Q_EMIT changed();
}

} // namespace Talvo
