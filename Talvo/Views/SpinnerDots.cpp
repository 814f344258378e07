#include "Views/SpinnerDots.h"

#include <QPainter>

namespace Talvo {

SpinnerDots::SpinnerDots(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setImplicitSize(18, 18);
    connect(this, &SpinnerDots::changed, this, [this] { update(); });
}

void SpinnerDots::paint(QPainter *painter)
{
    const qreal radius = width() / 11;
    const qreal distance = width() / 2 - radius - 0.5;
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(m_color);
    painter->translate(width() / 2, height() / 2);
    for (int dot = 0; dot < count; ++dot) {
        const int age = (m_step % count - dot + count) % count;
        painter->setOpacity(1 - 0.115 * age);
        painter->drawEllipse(QPointF(0, -distance), radius, radius);
        painter->rotate(360.0 / count);
    }
}

} // namespace Talvo
