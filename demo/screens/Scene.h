#pragma once

#include "demo/screens/Stage.h"

#include <vector>

namespace Talvo {

/// One picture to take: what the window opens with and what is done in it.
struct Scene
{
    QString name;           ///< of the picture's file, without the appearance
    qreal scale = 1;        ///< device pixels per device-independent pixel
    Stage::Setting setting; ///< without appearance and screen
    /// What leads to the state of the picture, up to its end; nothing to do for an absent one.
    std::function<void(Stage &stage)> act;
};

/// Every state of the window that is worth a look.
[[nodiscard]] std::vector<Scene> allScenes();

} // namespace Talvo
