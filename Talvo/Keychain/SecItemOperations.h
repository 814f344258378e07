#pragma once

#include "Keychain/KeychainItemOperations.h"

namespace Talvo {

/// The item operations of the Security framework (macOS), on generic-password items. Each is one
/// SecItem call; the statuses are the framework's own.
class SecItemOperations : public KeychainItemOperations
{
public:
    [[nodiscard]] Match copyMatching(const KeychainItemQuery &query) override;
    [[nodiscard]] KeychainStatus add(const KeychainItemQuery &query,
                                     const QByteArray &data) override;
    [[nodiscard]] KeychainStatus update(const KeychainItemQuery &query,
                                        const QByteArray &data) override;
    [[nodiscard]] KeychainStatus remove(const KeychainItemQuery &query) override;
};

} // namespace Talvo
