#include "Views/Controls/TextArea.h"

#include "Views/Controls/MousePress.h"

namespace Talvo::ControlTemplates {

void TextArea::mousePressEvent(QMouseEvent *event)
{
    if (isOfLeftMouseButton(*event)) {
        QQuickTextEdit::mousePressEvent(event);
    } else {
        QQuickTextArea::mousePressEvent(event);
    }
}

void TextArea::mouseMoveEvent(QMouseEvent *event)
{
    if (isOfLeftMouseButton(*event)) {
        QQuickTextEdit::mouseMoveEvent(event);
    } else {
        QQuickTextArea::mouseMoveEvent(event);
    }
}

void TextArea::mouseReleaseEvent(QMouseEvent *event)
{
    if (isOfLeftMouseButton(*event)) {
        QQuickTextEdit::mouseReleaseEvent(event);
    } else {
        QQuickTextArea::mouseReleaseEvent(event);
    }
}

} // namespace Talvo::ControlTemplates
