#include "Keychain/SecretBytes.h"

#include <algorithm>
#include <utility>

namespace Talvo {

SecretBytes::SecretBytes(QByteArray &&bytes) noexcept
    : m_bytes(std::move(bytes))
{
}

SecretBytes::~SecretBytes()
{
    if (!m_bytes.isDetached()) {
        return;
    }
    // Through volatile: a plain fill before the memory is freed would be optimised away.
    volatile char *const first = m_bytes.data();
    std::fill(first, first + m_bytes.size(), '\0');
}

} // namespace Talvo
