#pragma once

#include "standins/LoopbackService.h"

#include <QTemporaryDir>

namespace Talvo {

/// An authority of the test's own and the certificates of a loopback service that it signs, made
/// with the `openssl` command and thrown away with this object.
class TestCertificates
{
public:
    TestCertificates();

    /// False when the `openssl` command is missing or has failed.
    [[nodiscard]] bool areMade() const { return m_areMade; }

    /// What a client has to trust.
    [[nodiscard]] QSslCertificate authority() const;

    /// For 127.0.0.1, signed by the authority.
    [[nodiscard]] LoopbackService::TlsIdentity good() const { return identity("good"); }
    /// For another host name, signed by the authority.
    [[nodiscard]] LoopbackService::TlsIdentity wrongName() const { return identity("wrong-name"); }
    /// For 127.0.0.1, signed by the authority, no longer valid.
    [[nodiscard]] LoopbackService::TlsIdentity expired() const { return identity("expired"); }
    /// For 127.0.0.1, signed by itself.
    [[nodiscard]] LoopbackService::TlsIdentity selfSigned() const
    {
        return identity("self-signed");
    }

private:
    void makeAuthority();
    void makeSigned(const char *name, const char *subjectAlternativeName, const char *days);
    void makeSelfSigned();
    void run(const QStringList &arguments);
    [[nodiscard]] QString path(const char *name, const char *suffix) const;
    [[nodiscard]] LoopbackService::TlsIdentity identity(const char *name) const;

    QTemporaryDir m_folder;
    bool m_areMade = true;
};

} // namespace Talvo
