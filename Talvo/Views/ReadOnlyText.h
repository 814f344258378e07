#pragma once

#include "Views/MessageLooks.h"

#include <QAccessible>
#include <QPointer>
#include <QtQmlIntegration>

// Thousands of texts are made while a user scrolls: as a class of its own, each does without the
// objects and bindings that would make one out of a TextEdit, and takes half the time.
#include <QtQuick/private/qquicktextedit_p.h>

namespace Talvo {

/// A text exactly as written, to read, select and copy: never interpreted as markup, and named for
/// assistive technology.
///
/// Copying gives exactly the characters of the source, as plain text; a text document alone gives
/// HTML along and turns no-break spaces into blanks. The context menu is made when it is first
/// asked for. GUI thread only.
///
/// Made in C++: give it a parent item, a width, looks and a source, then call componentComplete().
class ReadOnlyText : public QQuickTextEdit
{
    Q_OBJECT
    QML_ELEMENT
    /// What is shown, position for position, line endings as line feeds.
    Q_PROPERTY(QString source READ source WRITE setSource NOTIFY sourceChanged FINAL)
    /// How it is drawn; outlives the text.
    Q_PROPERTY(Talvo::MessageLooks *looks READ looks WRITE setLooks NOTIFY looksChanged FINAL)
    /// How much of its width the text needs: all of it when it is read from right to left.
    Q_PROPERTY(qreal naturalWidth READ naturalWidth NOTIFY contentSizeChanged FINAL)

public:
    explicit ReadOnlyText(QQuickItem *parent = nullptr);

    [[nodiscard]] QString source() const { return m_source; }
    void setSource(const QString &source);
    [[nodiscard]] MessageLooks *looks() const { return m_looks; }
    void setLooks(MessageLooks *looks);
    [[nodiscard]] qreal naturalWidth() const;
    /// What the text is to assistive technology.
    [[nodiscard]] virtual QAccessible::Role accessibleRole() const
    {
        return QAccessible::StaticText;
    }

    /// Whether the window is not held up by laying a text out as a whole, as this item does.
    Q_INVOKABLE [[nodiscard]] static bool isQuick(const QString &text);

    /// Puts the selected text on the clipboard, as plain text; does nothing without a selection. In
    /// QML this is what `copy` calls, in place of TextEdit's own.
    Q_INVOKABLE void copy() const;

    /// Does without what the scene draws, until draw(): most of a row that is made ahead of the
    /// user is made frames before anybody can see it. Does nothing once the text has been drawn.
    void deferDrawing() { m_isDrawingDeferred = true; }
    /// In the next frame the text is there.
    void draw();

    bool event(QEvent *event) override;

Q_SIGNALS:
    void sourceChanged();
    void looksChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;
    /// Takes over what is to be shown, of a text that keeps its document itself.
    void setShownSource(const QString &source);
    /// The looks have other colours.
    virtual void applyColours();
    /// The looks have other fonts.
    virtual void applyFonts();
    /// Makes a view of this module beside the text, owned by it. Null when that fails.
    [[nodiscard]] QObject *makeView(const QString &name, const QVariantMap &properties);

private:
    /// The selected part of the source, empty without a selection.
    [[nodiscard]] QString selectedSource() const;
    /// Whether a key was one for the text as a whole.
    [[nodiscard]] bool takesTextKey(QKeyEvent *event);
    /// @param how the function of TextMenu that opens it
    void openMenu(Qt::FocusReason reason, const char *how);
    void offerSelection() const;

    QString m_source;
    QPointer<MessageLooks> m_looks;
    QPointer<QObject> m_menu;
    bool m_isDrawingDeferred = false;
};

} // namespace Talvo
