#include "Completion/TestCertificates.h"

#include <QFile>
#include <QProcess>

namespace Talvo {

namespace {

constexpr auto loopbackAddress = "subjectAltName=IP:127.0.0.1";

QStringList keyArguments(const QString &path)
{
    return {QStringLiteral("-newkey"),
            QStringLiteral("ec"),
            QStringLiteral("-pkeyopt"),
            QStringLiteral("ec_paramgen_curve:prime256v1"),
            QStringLiteral("-nodes"),
            QStringLiteral("-keyout"),
            path};
}

QStringList named(const char *name)
{
    return {QStringLiteral("-subj"), QStringLiteral("/CN=") + QString::fromUtf8(name)};
}

} // namespace

TestCertificates::TestCertificates()
{
    makeAuthority();
    makeSigned("good", loopbackAddress, "30");
    makeSigned("wrong-name", "subjectAltName=DNS:elsewhere.invalid", "30");
    makeSigned("expired", loopbackAddress, "-1");
    makeSelfSigned();
}

QSslCertificate TestCertificates::authority() const
{
    return QSslCertificate::fromPath(path("authority", ".pem")).value(0);
}

void TestCertificates::makeAuthority()
{
    run(QStringList{QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-days"),
                    QStringLiteral("30"), QStringLiteral("-out"), path("authority", ".pem")} +
        keyArguments(path("authority", ".key")) + named("Test authority"));
}

void TestCertificates::makeSigned(const char *name, const char *subjectAlternativeName,
                                  const char *days)
{
    run(QStringList{QStringLiteral("req"), QStringLiteral("-new"), QStringLiteral("-out"),
                    path(name, ".csr")} +
        keyArguments(path(name, ".key")) + named(name));
    QFile extensions(path(name, ".ext"));
    m_areMade = m_areMade && extensions.open(QIODevice::WriteOnly) &&
                extensions.write(subjectAlternativeName) > 0;
    extensions.close();
    run({QStringLiteral("x509"), QStringLiteral("-req"), QStringLiteral("-in"), path(name, ".csr"),
         QStringLiteral("-CA"), path("authority", ".pem"), QStringLiteral("-CAkey"),
         path("authority", ".key"), QStringLiteral("-CAcreateserial"), QStringLiteral("-days"),
         QString::fromUtf8(days), QStringLiteral("-extfile"), path(name, ".ext"),
         QStringLiteral("-out"), path(name, ".pem")});
}

void TestCertificates::makeSelfSigned()
{
    run(QStringList{QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-days"),
                    QStringLiteral("30"), QStringLiteral("-addext"),
                    QString::fromUtf8(loopbackAddress), QStringLiteral("-out"),
                    path("self-signed", ".pem")} +
        keyArguments(path("self-signed", ".key")) + named("self-signed"));
}

void TestCertificates::run(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral("openssl"), arguments);
    m_areMade = m_areMade && process.waitForFinished() &&
                process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

QString TestCertificates::path(const char *name, const char *suffix) const
{
    return m_folder.filePath(QString::fromUtf8(name) + QString::fromUtf8(suffix));
}

LoopbackService::TlsIdentity TestCertificates::identity(const char *name) const
{
    QFile keyFile(path(name, ".key"));
    if (!keyFile.open(QIODevice::ReadOnly)) {
        return {};
    }
    return {QSslCertificate::fromPath(path(name, ".pem")), QSslKey(keyFile.readAll(), QSsl::Ec)};
}

} // namespace Talvo
