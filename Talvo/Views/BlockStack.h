#pragma once

#include <QQuickItem>
#include <QtQmlIntegration>

namespace Talvo {

/// Stacks its children downwards, each as wide as the stack, and has its height at once: the
/// positioners of Qt Quick know theirs only after the next polish, too late for a list that wants
/// final heights when it creates a row. Children without a height take no place. GUI thread.
class BlockStack : public QQuickItem
{
    Q_OBJECT
    /// Between two children, in device-independent pixels.
    Q_PROPERTY(qreal spacing MEMBER m_spacing NOTIFY layoutChanged FINAL)
    /// The widest child's `naturalWidth` (of those that have one; else its width): as much as the
    /// content needs of the stack's width. Up to date when a frame is drawn.
    Q_PROPERTY(qreal naturalWidth READ naturalWidth NOTIFY naturalWidthChanged FINAL)

public:
    explicit BlockStack(QQuickItem *parent = nullptr);

    [[nodiscard]] qreal naturalWidth() const { return m_naturalWidth; }

Q_SIGNALS:
    void layoutChanged();
    void naturalWidthChanged();

protected:
    /// Gives the children their places, and the stack its height, now.
    void layOut();

    void componentComplete() override;
    void geometryChange(const QRectF &now, const QRectF &before) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void updatePolish() override;

private:
    /// Takes in that a child's size has changed.
    void follow();

    qreal m_spacing = 0;
    qreal m_naturalWidth = 0;
    bool m_isGrowing = false; ///< children came, which the next polish lays out all at once
};

} // namespace Talvo
