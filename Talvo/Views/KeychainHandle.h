#pragma once

#include "Keychain/KeychainStore.h"

#include <QQmlEngine>

namespace Talvo {

/// Lets a view hand a KeychainStore on without looking into it.
struct KeychainHandle
{
    Q_GADGET
    QML_VALUE_TYPE(keychainHandle)

public:
    /// Where the key is kept; null operations as long as nobody has set it.
    KeychainStore store{nullptr};
};

} // namespace Talvo
