#include "Platform/SecretMemory.h"

#include <algorithm>

namespace Talvo {

namespace {

template <class Text>
void wipeUnshared(Text &secret) noexcept
{
    // Asking a shared one for its data would copy it.
    if (!secret.isDetached()) {
        return;
    }
    // Through volatile: a plain fill before the memory is freed would be optimised away.
    auto *const first = reinterpret_cast<volatile char *>(secret.data());
    std::fill(first, first + secret.size() * qsizetype{sizeof(*secret.constData())}, '\0');
}

} // namespace

void wipe(QByteArray &secret) noexcept
{
    wipeUnshared(secret);
}

void wipe(QString &secret) noexcept
{
    wipeUnshared(secret);
}

} // namespace Talvo
