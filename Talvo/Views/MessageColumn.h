#pragma once

#include "Views/MarkdownBlockStack.h"
#include "Views/RowHeights.h"
#include "Views/SelectedMessages.h"

#include <QPointer>
#include <QQmlComponent>
#include <QQuickItem>

#include <deque>

namespace Talvo {

/// The content of the message list: a stack of rows of which only those near the visible area
/// exist.
///
/// Lies inside a Flickable, which tells it what is visible (`viewportY`, `viewportHeight`) and
/// learns from it where the content begins and ends (`originY`, `endY`, which move as estimated
/// heights give way to measured ones). What is visible never moves by itself: when heights change,
/// the rows above and below give way. While the end of the list is visible, the end is what stays.
/// A row with a long text is made in portions, towards where the user goes: so much of it exists at
/// once as is visible, and no row beyond it exists before it is whole. The first frame of a
/// conversation has to make what is visible only; what is near follows it.
///
/// The cost of a frame depends on what is visible, not on the number of messages. GUI thread.
class MessageColumn : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    /// The messages to show.
    Q_PROPERTY(
        Talvo::SelectedMessages *model READ model WRITE setModel NOTIFY modelChanged REQUIRED)
    /// Made with the initial properties `content`, `width` and `growsUpwards`; may have a `stack`,
    /// a MarkdownBlockStack that is made in portions.
    Q_PROPERTY(QQmlComponent *userDelegate MEMBER m_userDelegate NOTIFY delegatesChanged REQUIRED)
    /// Like `userDelegate`, for replies.
    Q_PROPERTY(QQmlComponent *assistantDelegate MEMBER m_assistantDelegate NOTIFY delegatesChanged
                   REQUIRED)
    /// Shown below the last row while it is visible.
    Q_PROPERTY(QQuickItem *footer READ footer WRITE setFooter NOTIFY footerChanged)
    /// Between two rows.
    Q_PROPERTY(qreal spacing MEMBER m_spacing NOTIFY layoutChanged)
    /// Above the first row and below the last.
    Q_PROPERTY(qreal padding MEMBER m_padding NOTIFY layoutChanged)
    /// Upper edge of the visible area.
    Q_PROPERTY(qreal viewportY READ viewportY WRITE setViewportY NOTIFY viewportChanged)
    /// Height of the visible area.
    Q_PROPERTY(
        qreal viewportHeight READ viewportHeight WRITE setViewportHeight NOTIFY viewportChanged)
    /// Upper edge of the content.
    Q_PROPERTY(qreal originY READ originY NOTIFY extentChanged)
    /// Lower edge of the content.
    Q_PROPERTY(qreal endY READ endY NOTIFY extentChanged)
    /// The view is moving to the end: it needs no help to stay inside the content.
    Q_PROPERTY(bool isFollowing MEMBER m_isFollowing NOTIFY isFollowingChanged)
    /// The end of the content is in view.
    Q_PROPERTY(bool isAtEnd READ isAtEnd NOTIFY isAtEndChanged)

public:
    explicit MessageColumn(QQuickItem *parent = nullptr);
    ~MessageColumn() override;
    Q_DISABLE_COPY_MOVE(MessageColumn)

    [[nodiscard]] SelectedMessages *model() const { return m_model; }
    void setModel(SelectedMessages *model);
    [[nodiscard]] QQuickItem *footer() const { return m_footer; }
    void setFooter(QQuickItem *footer);
    [[nodiscard]] qreal viewportY() const { return m_viewportY; }
    void setViewportY(qreal y);
    [[nodiscard]] qreal viewportHeight() const { return m_viewportHeight; }
    void setViewportHeight(qreal height);
    [[nodiscard]] qreal originY() const { return m_originY; }
    [[nodiscard]] qreal endY() const { return m_endY; }
    [[nodiscard]] bool isAtEnd() const { return m_isAtEnd; }

    /// Lays out what is visible now instead of before the next frame, so that originY and endY
    /// hold.
    Q_INVOKABLE void forceLayout() { layOut(); }

Q_SIGNALS:
    void modelChanged();
    void delegatesChanged();
    void footerChanged();
    void layoutChanged();
    void viewportChanged();
    void extentChanged();
    void isAtEndChanged();
    void isFollowingChanged();
    /// The visible area has to begin at `y`.
    void viewportRequested(qreal y);
    /// The rows belong to another conversation now; nothing of the old ones is left.
    void contentReplaced();
    /// Messages were added to the conversation on screen.
    void contentAppended();

protected:
    void componentComplete() override;
    void updatePolish() override { layOut(); }
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    struct Row
    {
        QQuickItem *item = nullptr;
        qreal y = 0;
        qreal height = 0;
        bool growsUpwards = false;
        QPointer<MarkdownBlockStack> stack; ///< what draws its text, if that may be a long one

        [[nodiscard]] qreal bottom() const { return y + height; }
        [[nodiscard]] bool isGrowing() const { return stack && stack->isGrowing(); }
        [[nodiscard]] bool isGrowingUpwards() const { return growsUpwards && isGrowing(); }
        [[nodiscard]] bool isGrowingDownwards() const { return !growsUpwards && isGrowing(); }
    };

    void replaceContent();
    void estimateHeights();
    void appendContent();
    void layOut();
    void restack();
    void fill();
    void discardDistantRows();
    void discardAllRows();
    /// Takes a row off the screen at once. Its item may be what asked for that, and goes later.
    static void discard(const Row &row);
    void placeItems();
    /// Has rows draw what is in view of them. Those ahead have their size, and nothing to draw yet.
    void drawVisibleParts();
    void updateExtent();
    void keepViewportInside();
    void setIsAtEnd(bool isAtEnd);
    void startFromEstimate();
    void moveRowsIntoView();
    /// The row at the top of the visible area, or the last one where the end is in view.
    [[nodiscard]] int indexInView() const;
    [[nodiscard]] qreal firstTop() const;
    /// Whether a row exists in part.
    [[nodiscard]] bool isGrowing(int index) const;

    [[nodiscard]] int rowCount() const { return m_model ? m_model->count() : 0; }
    [[nodiscard]] int lastIndex() const
    {
        return m_firstIndex + static_cast<int>(m_rows.size()) - 1;
    }
    [[nodiscard]] bool isLastRowMade() const
    {
        return !m_rows.empty() && lastIndex() == rowCount() - 1;
    }
    [[nodiscard]] qreal footerExtent() const;
    [[nodiscard]] Row makeRow(int index, bool growsUpwards);
    void appendRow();
    void prependRow();
    void fillDownTo(qreal visibleBottom, qreal bottom);
    void fillUpTo(qreal visibleTop, qreal top);
    /// Makes the next portion of a row whose text is long, which keeps its other end where it is.
    /// False when that takes longer than can be waited for.
    [[nodiscard]] bool grow(Row &row);
    void rememberHeight(int index, const Row &row);

    QPointer<SelectedMessages> m_model;
    QPointer<QQmlComponent> m_userDelegate;
    QPointer<QQmlComponent> m_assistantDelegate;
    QPointer<QQuickItem> m_footer;
    qreal m_spacing = 0;
    qreal m_padding = 0;
    qreal m_viewportY = 0;
    qreal m_viewportHeight = 0;
    qreal m_originY = 0;
    qreal m_endY = 0;
    bool m_isAtEnd = true;
    bool m_isFollowing = false;
    bool m_isLayingOut = false;
    bool m_isNew = true;           ///< nothing of the content has been laid out
    bool m_makesRowsAhead = false; ///< the content has been on screen

    RowHeights m_heights;   ///< of all rows, spacing included
    std::deque<Row> m_rows; ///< those that exist: consecutive, from m_firstIndex on
    int m_firstIndex = 0;
};

} // namespace Talvo
