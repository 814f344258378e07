#pragma once

#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QQmlParserStatus>
#include <QQuickItem>
#include <QtQmlIntegration>

namespace Talvo {

/// What a selectable text needs beside being drawn: copying exactly the characters of its source as
/// plain text (a text document alone gives HTML along and turns no-break spaces into blanks), and
/// its context menu, made when it is first asked for.
///
/// A child of the read-only TextEdit that it serves. GUI thread only.
class ReadOnlyText : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    /// What the TextEdit shows; position for position, line endings written as line feeds.
    Q_PROPERTY(QString source READ source WRITE setSource NOTIFY sourceChanged FINAL)

public:
    explicit ReadOnlyText(QObject *parent = nullptr);

    [[nodiscard]] QString source() const { return m_source; }
    void setSource(const QString &source);

    /// The selected part of the source, empty without a selection.
    [[nodiscard]] QString selectedText() const;
    /// Puts the selected text on the clipboard, as plain text; does nothing without a selection.
    Q_INVOKABLE void copy() const;

    void classBegin() override {}
    void componentComplete() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void sourceChanged();

protected:
    /// The TextEdit; null before the component is complete.
    [[nodiscard]] QQuickItem *edit() const { return m_edit; }
    /// Makes a view of this module beside the text, owned by it. Null when that fails.
    [[nodiscard]] QObject *makeView(const QString &name, const QVariantMap &properties) const;

private:
    void openMenu();
    void offerSelection() const;

    QString m_source;
    QPointer<QQuickItem> m_edit;
    QPointer<QObject> m_menu;
};

} // namespace Talvo
