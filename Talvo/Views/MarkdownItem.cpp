#include "Views/MarkdownItem.h"

#include "Views/MarkdownText.h"

#include <QtQuick/private/qquickaccessibleattached_p.h>
#include <QtQuick/private/qquicktext_p.h>

#include <cmath>

namespace Talvo {

namespace {

constexpr qreal gap = 8;

/// A marker alone: never markup, and named for assistive technology.
class Marker : public QQuickText
{
public:
    Marker(QQuickItem *parent, const QString &text)
        : QQuickText(parent)
    {
        classBegin();
        setTextFormat(PlainText);
        setText(text);
        auto *accessible = qobject_cast<QQuickAccessibleAttached *>(
            qmlAttachedPropertiesObject<QQuickAccessibleAttached>(this));
        accessible->setRole(QAccessible::StaticText);
        accessible->setName(text);
    }
};

} // namespace

MarkdownItem::MarkdownItem(QQuickItem *parent, const QString &marker, const BlockText &styled,
                           MessageLooks *looks)
    : m_looks(looks)
{
    setParent(parent);
    setParentItem(parent);
    auto *const sign = new Marker(this, marker);
    m_marker = sign;
    applyColours();
    applyFonts();
    sign->componentComplete();

    m_text = new MarkdownText(this, styled, MarkdownText::Rank::body, looks);
    layOut();
    m_text->componentComplete();
    layOut();
    connect(m_text, &QQuickItem::heightChanged, this, &MarkdownItem::layOut);
    connect(looks, &MessageLooks::coloursChanged, this, &MarkdownItem::applyColours);
    connect(looks, &MessageLooks::fontsChanged, this, [this] {
        applyFonts();
        layOut();
    });
}

void MarkdownItem::applyColours()
{
    m_marker->setColor(m_looks->text);
}

void MarkdownItem::applyFonts()
{
    m_marker->setFont(m_looks->body);
}

qreal MarkdownItem::naturalWidth() const
{
    return m_text->x() + m_text->naturalWidth();
}

void MarkdownItem::geometryChange(const QRectF &now, const QRectF &before)
{
    QQuickItem::geometryChange(now, before);
    if (m_text && now.width() != before.width()) {
        layOut();
    }
}

void MarkdownItem::layOut()
{
    m_text->setX(std::ceil(m_marker->implicitWidth()) + gap);
    m_text->setWidth(width() - m_text->x());
    m_marker->setY(m_text->baselineOffset() - m_marker->baselineOffset());
    setImplicitHeight(m_text->height());
}

} // namespace Talvo
