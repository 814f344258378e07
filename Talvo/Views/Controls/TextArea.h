#pragma once

#include <QQmlEngine>

#include <QtQuickTemplates2/private/qquicktextarea_p.h>

namespace Talvo::ControlTemplates {

/// A field of several lines that a press of the mouse reaches at once.
///
/// The toolkit's own waits for the pointer to move sideways, and forgets a press that lasts: a slow
/// click set no cursor, a drag straight up or down selected nothing.
class TextArea : public QQuickTextArea
{
    Q_OBJECT
    QML_ELEMENT
    QML_ATTACHED(QQuickTextAreaAttached)

public:
    using QQuickTextArea::QQuickTextArea;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
};

} // namespace Talvo::ControlTemplates
