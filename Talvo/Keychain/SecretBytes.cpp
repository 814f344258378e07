#include "Keychain/SecretBytes.h"

#include "Platform/SecretMemory.h"

#include <utility>

namespace Talvo {

SecretBytes::SecretBytes(QByteArray &&bytes) noexcept
    : m_bytes(std::move(bytes))
{
}

SecretBytes::~SecretBytes()
{
    wipe(m_bytes);
}

} // namespace Talvo
