#pragma once

#include "Views/BlockText.h"
#include "Views/ReadOnlyText.h"
#include "Views/StyledDocument.h"

#include <vector>

namespace Talvo {

/// One piece of styled text: a heading, a paragraph, an item, a cell of a table. Its links work: a
/// click opens one, hovering shows where it leads, Tab goes from one to the next and Return opens.
///
/// Made in C++ only, like a ReadOnlyText. GUI thread only.
class MarkdownText : public ReadOnlyText
{
    Q_OBJECT

public:
    /// What the text is, and so its font.
    enum class Rank {
        body,
        tableHead,
        headline, ///< a heading below the second level
        title2,
        title
    };

    /// @param parent gives the text its width, if it has one; never null
    /// @param looks never null
    MarkdownText(QQuickItem *parent, const BlockText &styled, Rank rank, MessageLooks *looks);

    [[nodiscard]] QAccessible::Role accessibleRole() const override;
    void componentComplete() override;
    bool event(QEvent *event) override;

protected:
    void applyColours() override;
    void applyFonts() override;

private:
    [[nodiscard]] QTextDocument &document();
    [[nodiscard]] InlineLooks inlineLooks() const;
    void fill();
    void restyle();
    void takeLinks();
    /// Whether a key was one for the links.
    [[nodiscard]] bool takesKey(const QKeyEvent &event);
    /// By the Tab key to the first link or, on the way back, to the last.
    void enterLinks(Qt::FocusReason reason);
    /// False, with no link marked any more, where there is no further one.
    bool goToLink(int step);
    void leaveLinks();
    void unmarkLink();
    void followSelection();
    void followHover();
    void showHint(const QString &address, QPointF place);
    [[nodiscard]] QPointF below(int position) const;

    BlockText m_styled;
    Rank m_rank;
    InlineLooks m_shownLooks;
    std::vector<AttributedString::Run> m_links; ///< those that can be opened
    int m_currentLink = -1; ///< index into m_links of the one that has the keyboard, -1 for none
    QPointF m_pointer;
    QPointer<QObject> m_hint;
};

} // namespace Talvo
