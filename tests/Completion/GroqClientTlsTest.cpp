#include "Completion/ClientCall.h"
#include "Completion/TestCertificates.h"

#include <QSslConfiguration>

using namespace Talvo;
using namespace std::chrono_literals;

namespace {

/// For the life of a test the process trusts the test's authority in place of the system's.
class GroqClientTls : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        certificates = std::make_unique<TestCertificates>();
        ASSERT_TRUE(certificates->areMade()) << "needs the openssl command";
    }

    static void TearDownTestSuite() { certificates.reset(); }

    void SetUp() override
    {
        before = QSslConfiguration::defaultConfiguration();
        QSslConfiguration trusting = before;
        trusting.setCaCertificates({certificates->authority()});
        QSslConfiguration::setDefaultConfiguration(trusting);
    }

    void TearDown() override { QSslConfiguration::setDefaultConfiguration(before); }

    static void expectRefused(const LoopbackService::TlsIdentity &identity)
    {
        const LoopbackService service({ScriptedAnswer::http(200, successBody("x"))}, identity);
        const CallEnd end = ClientCall(service).end();
        EXPECT_EQ(end.failure, PlatformFailure::tlsFailure) << qPrintable(end.description);
        EXPECT_EQ(end.description, QStringLiteral("Sunucuyla güvenli bağlantı kurulamadı."));
        EXPECT_EQ(service.requestCount(), 0U);
    }

    static inline std::unique_ptr<TestCertificates> certificates;
    QSslConfiguration before;
};

} // namespace

TEST_F(GroqClientTls, acceptsATrustedCertificate)
{
    const LoopbackService service({ScriptedAnswer::http(200, successBody("x"))},
                                  certificates->good());
    const ClientCall call(service);
    EXPECT_EQ(call.end().reply, "x");
    EXPECT_EQ(call.end().reply, "x");
    EXPECT_EQ(service.requestCount(), 2U);
}

TEST_F(GroqClientTls, refusesACertificateForAnotherName)
{
    expectRefused(certificates->wrongName());
}

TEST_F(GroqClientTls, refusesAnExpiredCertificate)
{
    expectRefused(certificates->expired());
}

TEST_F(GroqClientTls, refusesASelfSignedCertificate)
{
    expectRefused(certificates->selfSigned());
}

TEST_F(GroqClientTls, refusesAnAuthorityThatTheSystemDoesNotTrust)
{
    QSslConfiguration::setDefaultConfiguration(before);
    expectRefused(certificates->good());
}

TEST_F(GroqClientTls, verifiesEvenIfTheDefaultDoesNot)
{
    QSslConfiguration careless = QSslConfiguration::defaultConfiguration();
    careless.setPeerVerifyMode(QSslSocket::VerifyNone);
    QSslConfiguration::setDefaultConfiguration(careless);
    expectRefused(certificates->selfSigned());
}

TEST_F(GroqClientTls, failsWhereNoTlsIsSpoken)
{
    const LoopbackService service({ScriptedAnswer::http(200, successBody("x"))});
    QUrl url = service.url();
    url.setScheme(QStringLiteral("https"));
    // The service takes the handshake for half a request and waits for the rest.
    EXPECT_EQ(ClientCall(url, 200ms).end().failure, PlatformFailure::timedOut);
    EXPECT_EQ(service.requestCount(), 0U);
}

TEST_F(GroqClientTls, sendsOnceWhenTheConnectionIsClosedUnanswered)
{
    for (const auto end : {ScriptedAnswer::End::close, ScriptedAnswer::End::reset}) {
        const LoopbackService service({ScriptedAnswer().then(end)}, certificates->good());
        EXPECT_EQ(ClientCall(service).end().failure, PlatformFailure::connectionLost);
        letPass(50ms);
        EXPECT_EQ(service.requestCount(), 1U);
    }
}

TEST_F(GroqClientTls, noticesABodyThatEndsEarly)
{
    const LoopbackService service({ScriptedAnswer::head(200, {{"Content-Length", "100"}})
                                       .sending(successBody("x"))
                                       .then(ScriptedAnswer::End::close)},
                                  certificates->good());
    EXPECT_EQ(ClientCall(service).end().failure, PlatformFailure::connectionLost);
    EXPECT_EQ(service.requestCount(), 1U);
}
