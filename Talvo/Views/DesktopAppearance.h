#pragma once

#include <QColor>
#include <QFont>
#include <QObject>
#include <QVariant>
#include <QtQmlIntegration>

namespace Talvo {

/// What the desktop says about looks, kept up to date: light or dark, accent colour, motion.
///
/// The source is the settings portal of freedesktop.org, asked without waiting: until its answer
/// (and where there is no portal) the palette of the platform decides. GUI thread only.
class DesktopAppearance : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    /// True when the desktop asks for a dark appearance.
    Q_PROPERTY(bool dark READ isDark NOTIFY changed FINAL)
    /// True when the desktop names an accent colour.
    Q_PROPERTY(bool hasAccent READ hasAccent NOTIFY changed FINAL)
    /// The desktop's accent colour; invalid where it names none.
    Q_PROPERTY(QColor accent READ accent NOTIFY changed FINAL)
    /// True when the desktop asks programs not to animate.
    Q_PROPERTY(bool reducedMotion READ isReducedMotion NOTIFY changed FINAL)
    /// Height of the application font's letters as asked for, in device-independent pixels.
    Q_PROPERTY(int bodyPixelSize READ bodyPixelSize CONSTANT FINAL)
    /// Family of the system's fixed-width font.
    Q_PROPERTY(QString fixedFamily READ fixedFamily CONSTANT FINAL)

public:
    explicit DesktopAppearance(QObject *parent = nullptr);

    [[nodiscard]] bool isDark() const { return m_dark; }
    [[nodiscard]] bool hasAccent() const { return m_accent.isValid(); }
    [[nodiscard]] QColor accent() const { return m_accent; }
    [[nodiscard]] bool isReducedMotion() const { return m_reducedMotion; }
    [[nodiscard]] static int bodyPixelSize();
    [[nodiscard]] static QString fixedFamily();

    /// The application font in a size, in device-independent pixels, and a weight, as QFont::Weight
    /// has it. Behind its own family stands one for emoji, where the system has it: to find such
    /// a font by itself the toolkit would look through all of them, again for each size and weight.
    Q_INVOKABLE [[nodiscard]] static QFont font(int pixelSize, int weight);

    /// Contrast.h for the theme's expressions.
    Q_INVOKABLE [[nodiscard]] static QColor readable(const QColor &colour, const QColor &background,
                                                     double ratio);
    /// See Contrast.h.
    Q_INVOKABLE [[nodiscard]] static double contrastRatio(const QColor &one, const QColor &other);
    /// See Contrast.h.
    Q_INVOKABLE [[nodiscard]] static QColor blended(const QColor &top, const QColor &bottom);

    /// Takes one setting as the portal gives it; unknown names and malformed values are ignored.
    /// Public for the tests: the portal's answers are input from outside.
    void take(const QString &space, const QString &key, const QVariant &value);

Q_SIGNALS:
    void changed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void followPalette();
    void update(bool dark, const QColor &accent, bool reducedMotion);

    bool m_dark = false;
    bool m_schemeKnown = false;
    QColor m_accent;
    bool m_reducedMotion = false;
};

} // namespace Talvo
