#pragma once

#include <QQmlEngine>

#include <QtQuickTemplates2/private/qquicktextfield_p.h>

namespace Talvo::ControlTemplates {

/// A field of one line that a press of the mouse reaches at once.
///
/// The toolkit's own waits for the pointer to move sideways, and forgets a press that lasts: a slow
/// click set no cursor, a drag straight up or down selected nothing.
class TextField : public QQuickTextField
{
    Q_OBJECT
    QML_ELEMENT

public:
    using QQuickTextField::QQuickTextField;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
};

} // namespace Talvo::ControlTemplates
