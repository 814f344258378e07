#pragma once

#include "Controller/ChatModel.h"

#include <QQmlEngine>

namespace Talvo {

/// Makes the controller's type known to QML without the controller knowing of QML.
struct ChatModelForeign
{
    Q_GADGET
    QML_FOREIGN(Talvo::ChatModel)
    QML_NAMED_ELEMENT(ChatModel)
    QML_UNCREATABLE("The window is given its controller.")
};

} // namespace Talvo
