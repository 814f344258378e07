#pragma once

#include <QByteArray>

namespace Talvo {

/// Owns a secret's bytes and overwrites them when it goes, so that they do not stay behind in
/// freed memory. A copy that somebody else shares is left to its owner.
class SecretBytes
{
public:
    /// Takes the bytes over.
    explicit SecretBytes(QByteArray &&bytes) noexcept;
    ~SecretBytes();
    Q_DISABLE_COPY_MOVE(SecretBytes)

    /// The secret; a copy of it is overwritten by nobody.
    [[nodiscard]] const QByteArray &bytes() const noexcept { return m_bytes; }

private:
    QByteArray m_bytes;
};

} // namespace Talvo
