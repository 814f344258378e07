#pragma once

#include "Views/BlockStack.h"
#include "Views/BlockText.h"
#include "Views/MarkdownBlocks.h"
#include "Views/MarkdownText.h"
#include "Views/MessageLooks.h"

#include <QPointer>
#include <QQmlComponent>

#include <limits>

namespace Talvo {

/// A reply drawn from its Markdown text, one view below the other per block; or a very long text as
/// it stands, piece by piece. GUI thread.
///
/// Texts and items are made here; what there is little of comes from components.
class MarkdownBlockStack : public Talvo::BlockStack
{
    Q_OBJECT
    QML_ELEMENT
    /// The reply as stored in the message.
    Q_PROPERTY(QString content READ content WRITE setContent NOTIFY contentChanged REQUIRED FINAL)
    /// The text is no Markdown.
    Q_PROPERTY(bool literal READ isLiteral WRITE setLiteral NOTIFY literalChanged FINAL)
    /// The end of a long text is made first. Set once.
    Q_PROPERTY(bool fromEnd READ isFromEnd WRITE setFromEnd NOTIFY fromEndChanged FINAL)
    /// Of the texts; set once, outlives the stack.
    Q_PROPERTY(Talvo::MessageLooks *looks MEMBER m_looks NOTIFY looksChanged FINAL)
    /// Made with the initial property `table`, a `blockTable`.
    Q_PROPERTY(QQmlComponent *tableView MEMBER m_tableView NOTIFY viewsChanged FINAL)
    /// A line across the whole width.
    Q_PROPERTY(QQmlComponent *divider MEMBER m_divider NOTIFY viewsChanged FINAL)
    /// Stands for the middle of a text beyond all measure, and calls showMore().
    Q_PROPERTY(QQmlComponent *more MEMBER m_more NOTIFY viewsChanged FINAL)

public:
    explicit MarkdownBlockStack(QQuickItem *parent = nullptr);

    [[nodiscard]] QString content() const { return m_content; }
    void setContent(const QString &content);
    [[nodiscard]] bool isLiteral() const { return m_blocks.isLiteral(); }
    void setLiteral(bool isLiteral);

    [[nodiscard]] bool isFromEnd() const { return m_blocks.isFromEnd(); }
    void setFromEnd(bool isFromEnd);

    /// True while a part of a long text is still to be made, at the beginning or at the end.
    [[nodiscard]] bool isGrowing() const { return m_blocks.isGrowing(); }
    /// Makes a portion of it now; the stack has its new height afterwards.
    void grow() { m_blocks.grow(); }

    /// Draws the texts of all views that reach into a part of the stack, given in its own
    /// coordinates. Others stay undrawn until they do; what has been drawn stays drawn. Until this
    /// is first called, all of the stack counts as visible.
    void setVisiblePart(qreal top, qreal bottom);

    /// Goes on where the middle of a text is left out; does nothing where it is not.
    Q_INVOKABLE void showMore() { m_blocks.showMore(); }

Q_SIGNALS:
    void contentChanged();
    void literalChanged();
    void fromEndChanged();
    void looksChanged();
    void viewsChanged();

protected:
    void componentComplete() override;
    void updatePolish() override;

private:
    void drawVisibleViews();
    void insertViews(int first, int last);
    void removeViews(int first, int last);
    void rebuild();
    [[nodiscard]] QQuickItem *makeView(const MarkdownBlocks::Row &row);
    [[nodiscard]] QQuickItem *makePlainText(const QString &text);
    [[nodiscard]] QQuickItem *makeBlock(const MarkdownBlocks::Block &block);
    [[nodiscard]] QQuickItem *makeText(const BlockText &text, MarkdownText::Rank rank);
    [[nodiscard]] QQuickItem *makeItem(const BlockText &text, const QString &marker);
    [[nodiscard]] QQuickItem *makeFrom(QQmlComponent *component, QVariantMap properties);

    MarkdownBlocks m_blocks;
    QString m_content;
    QPointer<MessageLooks> m_looks;
    QQmlComponent *m_tableView = nullptr;
    QQmlComponent *m_divider = nullptr;
    QQmlComponent *m_more = nullptr;
    QList<QQuickItem *> m_views; ///< one for each row of the blocks
    qreal m_visibleTop = -std::numeric_limits<qreal>::infinity();
    qreal m_visibleBottom = std::numeric_limits<qreal>::infinity();
};

} // namespace Talvo
