#pragma once

#include "Views/BlockText.h"
#include "Views/ReadOnlyText.h"
#include "Views/StyledDocument.h"

#include <QColor>
#include <QQuickTextDocument>
#include <QtQmlIntegration>

#include <vector>

namespace Talvo {

/// Shows inline text in the read-only TextEdit that it is a child of, and makes its links work: a
/// click opens one, hovering shows where it leads, Tab goes from one to the next and Return opens.
/// GUI thread only.
class StyledText : public Talvo::ReadOnlyText
{
    Q_OBJECT
    QML_ELEMENT
    /// What the TextEdit shows.
    Q_PROPERTY(Talvo::BlockText styled READ styled WRITE setStyled NOTIFY styledChanged FINAL)
    /// Colour of links.
    Q_PROPERTY(QColor linkColor READ linkColor WRITE setLinkColor NOTIFY looksChanged FINAL)
    /// Colour under code.
    Q_PROPERTY(
        QColor codeBackground READ codeBackground WRITE setCodeBackground NOTIFY looksChanged FINAL)
    /// Family of the font of code.
    Q_PROPERTY(QString codeFamily READ codeFamily WRITE setCodeFamily NOTIFY looksChanged FINAL)
    /// True when the text is read from right to left.
    Q_PROPERTY(bool rightToLeft READ isRightToLeft NOTIFY styledChanged FINAL)

public:
    using ReadOnlyText::ReadOnlyText;

    [[nodiscard]] BlockText styled() const { return m_styled; }
    void setStyled(const BlockText &styled);
    [[nodiscard]] QColor linkColor() const { return m_looks.link; }
    void setLinkColor(const QColor &color);
    [[nodiscard]] QColor codeBackground() const { return m_looks.codeBackground; }
    void setCodeBackground(const QColor &color);
    [[nodiscard]] QString codeFamily() const { return m_looks.codeFamily; }
    void setCodeFamily(const QString &family);
    [[nodiscard]] bool isRightToLeft() const { return source().isRightToLeft(); }

    void componentComplete() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void styledChanged();
    void looksChanged();

private Q_SLOTS:
    void followHover();
    void open(const QString &address);

private:
    [[nodiscard]] QTextDocument *document() const;
    void fill();
    void restyle();
    bool goToLink(int step);
    void leaveLinks();
    void showHint(const QString &address, QPointF place);
    [[nodiscard]] QPointF below(int position) const;

    BlockText m_styled;
    InlineLooks m_looks;
    std::vector<AttributedString::Run> m_links; ///< those that can be opened
    int m_currentLink = -1; ///< index into m_links of the one that has the keyboard, -1 for none
    QPointF m_pointer;
    QPointer<QObject> m_hint;
};

} // namespace Talvo
