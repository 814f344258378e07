#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Talvo {

/// Overwrites a secret with zeros, so that it does not stay behind in freed memory.
///
/// Memory that another copy shares is left alone: whoever holds the last copy wipes it. Any thread,
/// as with any other change of the argument.
void wipe(QByteArray &secret) noexcept;
void wipe(QString &secret) noexcept;
inline void wipe(std::optional<QString> &secret) noexcept
{
    if (secret) {
        wipe(*secret);
    }
}

/// Wipes a secret at the end of a scope, also of a coroutine's, whichever way that is left.
template <class Secret>
class WipedAtEnd
{
public:
    /// @param secret outlives this object
    explicit WipedAtEnd(Secret &secret) noexcept
        : m_secret(secret)
    {
    }
    ~WipedAtEnd() { wipe(m_secret); }
    Q_DISABLE_COPY_MOVE(WipedAtEnd)

private:
    Secret &m_secret;
};

} // namespace Talvo
