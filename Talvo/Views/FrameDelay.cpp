#include "Views/FrameDelay.h"

#include <QtGlobal>

namespace Talvo {

void shortenFrameDelay()
{
    constexpr auto variable = "QT_QPA_UPDATE_IDLE_TIME";
    if (!qEnvironmentVariableIsSet(variable)) {
        qputenv(variable, "1");
    }
}

} // namespace Talvo
