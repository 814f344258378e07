#pragma once

#include <QInputDevice>
#include <QMouseEvent>

namespace Talvo::ControlTemplates {

/// Whether an event is part of a press of the left mouse button. A finger, whose events look alike,
/// may scroll.
inline bool isOfLeftMouseButton(const QMouseEvent &event)
{
    return event.deviceType() != QInputDevice::DeviceType::TouchScreen &&
           (event.button() == Qt::LeftButton || event.buttons().testFlag(Qt::LeftButton));
}

} // namespace Talvo::ControlTemplates
