#include "Views/Icon.h"

#include <QCache>
#include <QFile>
#include <QImage>
#include <QMutex>
#include <QPainter>
#include <QSvgRenderer>

namespace Talvo {

namespace {

constexpr qreal designSize = 20;
constexpr int cachedImages = 128;

QImage drawn(const QString &name, QSize size, const QColor &color)
{
    QSvgRenderer renderer(QStringLiteral(":/qt/qml/Talvo/Views/icons/%1.svg").arg(name));
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

/// Rows of a list show the same few icons again and again. Painting may happen on the render
/// thread, hence the lock.
QImage cached(const QString &name, QSize size, const QColor &color)
{
    static QMutex mutex;
    static QCache<QString, QImage> cache(cachedImages);
    const QMutexLocker locker(&mutex);
    const QString key = QStringLiteral("%1 %2 %3 %4")
                            .arg(name)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(color.rgba());
    if (const QImage *image = cache.object(key)) {
        return *image;
    }
    QImage image = drawn(name, size, color);
    cache.insert(key, new QImage(image));
    return image;
}

} // namespace

Icon::Icon(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setImplicitSize(designSize, designSize);
}

void Icon::setName(const QString &name)
{
    if (m_name == name) {
        return;
    }
    m_name = name;
    update();
    Q_EMIT nameChanged();
}

void Icon::setColor(const QColor &color)
{
    if (m_color == color) {
        return;
    }
    m_color = color;
    update();
    Q_EMIT colorChanged();
}

void Icon::paint(QPainter *painter)
{
    if (m_name.isEmpty()) {
        return;
    }
    // The painter is scaled to the screen; one image pixel has to meet one screen pixel.
    const QTransform scale = painter->deviceTransform();
    const QSize pixels(qRound(width() * scale.m11()), qRound(height() * scale.m22()));
    if (pixels.isEmpty()) {
        return;
    }
    painter->drawImage(QRectF(0, 0, width(), height()), cached(m_name, pixels, m_color));
}

} // namespace Talvo
