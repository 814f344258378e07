#pragma once

#include "Keychain/KeychainItemOperations.h"
#include "Keychain/SecretServiceBounds.h"

#include <stop_token>

namespace Talvo {

/// The item operations on the freedesktop.org Secret Service (GNOME Keyring, KWallet, KeePassXC):
/// an item is a secret with the attributes `service` and `account`, in the default collection.
///
/// Items that other programs made with these attributes are the same item, in whatever collection
/// they are: reading takes the default collection's, then the first by path; updating and removing
/// act on all of them, as their counterparts of the Security framework do.
class SecretServiceItemOperations : public KeychainItemOperations
{
public:
    /// Connects to nothing yet. @param bounds how long each operation may take
    explicit SecretServiceItemOperations(const SecretServiceBounds &bounds = {});

    [[nodiscard]] Match copyMatching(const KeychainItemQuery &query) override;
    [[nodiscard]] KeychainStatus add(const KeychainItemQuery &query,
                                     const QByteArray &data) override;
    [[nodiscard]] KeychainStatus update(const KeychainItemQuery &query,
                                        const QByteArray &data) override;
    [[nodiscard]] KeychainStatus remove(const KeychainItemQuery &query) override;
    void stopPrompts() override;

private:
    SecretServiceBounds m_bounds;
    std::stop_source m_prompts;
};

} // namespace Talvo
