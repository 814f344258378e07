#include "Views/Controls/TextField.h"

#include "Views/Controls/MousePress.h"

namespace Talvo::ControlTemplates {

void TextField::mousePressEvent(QMouseEvent *event)
{
    if (isOfLeftMouseButton(*event)) {
        QQuickTextInput::mousePressEvent(event);
    } else {
        QQuickTextField::mousePressEvent(event);
    }
}

void TextField::mouseMoveEvent(QMouseEvent *event)
{
    if (isOfLeftMouseButton(*event)) {
        QQuickTextInput::mouseMoveEvent(event);
    } else {
        QQuickTextField::mouseMoveEvent(event);
    }
}

void TextField::mouseReleaseEvent(QMouseEvent *event)
{
    if (isOfLeftMouseButton(*event)) {
        QQuickTextInput::mouseReleaseEvent(event);
    } else {
        QQuickTextField::mouseReleaseEvent(event);
    }
}

} // namespace Talvo::ControlTemplates
