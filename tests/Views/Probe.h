#pragma once

#include "Views/DesktopAppearance.h"
#include "Views/MarkdownBlocks.h"

#include "InputMethod.h"
#include "support/BusyWorkers.h"

#include <QObject>
#include <QQuickItem>
#include <QUrl>

#include <optional>

/// What the QML tests need from outside the scene.
class Probe : public QObject
{
    Q_OBJECT
    /// Addresses handed to the desktop so far.
    Q_PROPERTY(QStringList opened READ opened NOTIFY openedChanged)

public:
    explicit Probe(QObject *parent = nullptr);
    ~Probe() override;

    QStringList opened() const { return m_opened; }

    /// Makes the desktop's palette dark or light.
    Q_INVOKABLE void setDark(bool dark) const;
    Q_INVOKABLE QString clipboard() const;
    Q_INVOKABLE QString clipboardHtml() const;
    Q_INVOKABLE void setClipboard(const QString &text) const;

    /// Asks the views for less motion, or for the usual one; `appearance` is the theme's.
    Q_INVOKABLE void setReducedMotion(Talvo::DesktopAppearance *appearance, bool isReduced) const;
    /// A key that is held: pressed once more, as the keyboard repeats it.
    Q_INVOKABLE void repeatKey(QQuickItem *item, int key) const;

    /// An input method shows a text as under way in what has the keyboard.
    Q_INVOKABLE void compose(const QString &text) { m_inputMethod.compose(text); }

    /// What assistive technology is told of an item.
    Q_INVOKABLE QString name(QQuickItem *item) const;
    Q_INVOKABLE QString description(QQuickItem *item) const;
    Q_INVOKABLE int role(QQuickItem *item) const;
    /// Where an item is told to be on the screen, in the coordinates of its window's content.
    Q_INVOKABLE QRect place(QQuickItem *item) const;
    /// Where one of its characters is told to be, in the same coordinates.
    Q_INVOKABLE QRect placeOfCharacter(QQuickItem *item, int offset) const;
    /// The character that is told to be at a point in those coordinates.
    Q_INVOKABLE int characterAt(QQuickItem *item, const QPointF &point) const;
    /// Names of the states an item is told to be in, of those that tests ask for.
    Q_INVOKABLE QStringList states(QQuickItem *item) const;
    /// Content of the Text interface; line and paragraph separators as line feeds.
    Q_INVOKABLE QString text(QQuickItem *item) const;
    /// Writes through the EditableText interface; false when there is none.
    Q_INVOKABLE bool write(QQuickItem *item, const QString &text) const;
    /// Sets the value, as the platform does for want of the EditableText interface.
    Q_INVOKABLE void setValue(QQuickItem *item, const QString &text) const;
    /// Invokes the press action.
    Q_INVOKABLE void press(QQuickItem *item) const;
    /// Names of the texts and headings in an item, in reading order, with bars between them.
    Q_INVOKABLE QString texts(QQuickItem *item) const;
    /// Format of a character in a TextEdit's document.
    Q_INVOKABLE QColor colorAt(QQuickItem *edit, int position) const;
    /// From now on no reply is parsed.
    Q_INVOKABLE void holdParsing() { m_busyParsers.emplace(Talvo::MarkdownBlocks::threads()); }
    /// Ends that, and waits until all replies are parsed.
    Q_INVOKABLE void releaseParsing() { m_busyParsers.reset(); }
    /// Descendants of an item, depth first, whose class name starts with `type`.
    Q_INVOKABLE QList<QQuickItem *> find(QQuickItem *item, const QString &type) const;

public Q_SLOTS:
    void open(const QUrl &url);

Q_SIGNALS:
    void openedChanged();

private:
    QStringList m_opened;
    InputMethod m_inputMethod;
    std::optional<Talvo::Testing::BusyWorkers> m_busyParsers;
};
