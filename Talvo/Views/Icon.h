#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QString>
#include <QtQmlIntegration>

namespace Talvo {

/// One of the icons in Views/icons, in one colour, sharp at every scale of the screen.
///
/// It is decoration: not in the accessibility tree; the control around it carries the name.
class Icon : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    /// File name in Views/icons without its ending, e.g. "key-fill".
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged REQUIRED FINAL)
    /// The one colour; its alpha counts.
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)

public:
    explicit Icon(QQuickItem *parent = nullptr);

    [[nodiscard]] QString name() const { return m_name; }
    void setName(const QString &name);
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void nameChanged();
    void colorChanged();

private:
    QString m_name;
    QColor m_color = Qt::black;
};

} // namespace Talvo
