#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQmlIntegration>

namespace Talvo {

/// A ring of eight round dots, one of them lit, the ones before it fading. Drawn here because the
/// software renderer makes squares of rectangles this small. GUI thread.
class SpinnerDots : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    /// Which dot is lit, from 0, counted clockwise from the top; taken modulo eight.
    Q_PROPERTY(int step MEMBER m_step NOTIFY changed FINAL)
    /// Colour of the lit dot.
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)

public:
    /// Dots in the ring.
    static constexpr int count = 8;

    explicit SpinnerDots(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void changed();

private:
    int m_step = 0;
    QColor m_color = Qt::black;
};

} // namespace Talvo
