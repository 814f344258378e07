#pragma once

#include "Views/BlockText.h"
#include "Views/MessageLooks.h"

#include <QPointer>
#include <QQuickItem>

class QQuickText;

namespace Talvo {

class MarkdownText;

/// An item of a list: its bullet or number, and its text, which wraps under itself. Made in C++
/// only. GUI thread.
class MarkdownItem : public QQuickItem
{
    Q_OBJECT
    /// How much of its width the item needs. Read anew for each frame: no signal tells of it.
    Q_PROPERTY(qreal naturalWidth READ naturalWidth FINAL)

public:
    /// @param parent gives the item its width; never null
    /// @param marker "•", or the number and a full stop
    /// @param looks never null
    MarkdownItem(QQuickItem *parent, const QString &marker, const BlockText &styled,
                 MessageLooks *looks);

    [[nodiscard]] qreal naturalWidth() const;

protected:
    void geometryChange(const QRectF &now, const QRectF &before) override;

private:
    void applyColours();
    void applyFonts();
    /// Places marker and text side by side on one baseline.
    void layOut();

    QPointer<MessageLooks> m_looks;
    QQuickText *m_marker = nullptr;
    MarkdownText *m_text = nullptr;
};

} // namespace Talvo
