#pragma once

#include <QColor>
#include <QFont>
#include <QObject>
#include <QtQmlIntegration>

namespace Talvo {

/// How the texts of messages are drawn. Set by the theme; each text follows what it is given. GUI
/// thread.
class MessageLooks : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    /// Of all text but links.
    Q_PROPERTY(QColor text MEMBER text NOTIFY coloursChanged FINAL)
    /// Behind selected text.
    Q_PROPERTY(QColor selection MEMBER selection NOTIFY coloursChanged FINAL)
    /// Of selected text.
    Q_PROPERTY(QColor selectedText MEMBER selectedText NOTIFY coloursChanged FINAL)
    /// Of a link's text.
    Q_PROPERTY(QColor link MEMBER link NOTIFY coloursChanged FINAL)
    /// Of the text of the link that has the keyboard, which stands on the links' colour.
    Q_PROPERTY(QColor focusedLink MEMBER focusedLink NOTIFY coloursChanged FINAL)
    /// Under code.
    Q_PROPERTY(QColor codeBackground MEMBER codeBackground NOTIFY coloursChanged FINAL)
    /// Under the cells of a table's header.
    Q_PROPERTY(QColor tableHead MEMBER tableHead NOTIFY coloursChanged FINAL)
    /// Between the cells of a table.
    Q_PROPERTY(QColor tableLine MEMBER tableLine NOTIFY coloursChanged FINAL)
    /// Of paragraphs, items and cells.
    Q_PROPERTY(QFont body MEMBER body NOTIFY fontsChanged FINAL)
    /// Of the cells of a table's header.
    Q_PROPERTY(QFont strong MEMBER strong NOTIFY fontsChanged FINAL)
    /// Of headings of the first level.
    Q_PROPERTY(QFont title MEMBER title NOTIFY fontsChanged FINAL)
    /// Of headings of the second level.
    Q_PROPERTY(QFont title2 MEMBER title2 NOTIFY fontsChanged FINAL)
    /// Of all other headings.
    Q_PROPERTY(QFont headline MEMBER headline NOTIFY fontsChanged FINAL)
    /// The family of code, of a fixed width.
    Q_PROPERTY(QString codeFamily MEMBER codeFamily NOTIFY fontsChanged FINAL)

public:
    using QObject::QObject;

    QColor text;
    QColor selection;
    QColor selectedText;
    QColor link;
    QColor focusedLink;
    QColor codeBackground;
    QColor tableHead;
    QColor tableLine;
    QFont body;
    QFont strong;
    QFont title;
    QFont title2;
    QFont headline;
    QString codeFamily;

Q_SIGNALS:
    void coloursChanged();
    void fontsChanged();
};

} // namespace Talvo
