#include "Completion/ClientCall.h"
#include "Platform/WaitingThreads.h"

#include "support/BusyWorkers.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkCookie>
#include <QNetworkCookieJar>
#include <QNetworkProxy>
#include <QScopeGuard>
#include <QSemaphore>
#include <QTcpServer>

#include <chrono>
#include <set>

using namespace Talvo;
using namespace std::chrono_literals;

using Case = GroqClient::GroqError::Case;
using Role = ChatMessage::Role;

namespace {

QJsonObject json(const QByteArray &body)
{
    return QJsonDocument::fromJson(body).object();
}

struct AnsweredCall
{
    const char *name;
    int status;
    QByteArray body;
    /// Either a reply ...
    std::optional<QByteArray> reply;
    /// ... or an error: of the client with its description, or else an undecodable answer.
    std::optional<Case> groqCase;
    QString description;
};

const QByteArray page = "<html><h1>Bad gateway</h1></html>";
const QByteArray envelope = R"({"error":{"message":"Anahtar geçersiz.","type":"auth"}})";
const QString envelopeText = QStringLiteral("Anahtar geçersiz.");
const QString emptyText = QStringLiteral("Groq boş bir yanıt döndürdü.");
const QString undecodableText = QStringLiteral("Sunucunun yanıtı çözümlenemedi.");

QString statusText(int status)
{
    return QStringLiteral("Groq isteği başarısız oldu (HTTP %1).").arg(status);
}

const AnsweredCall answeredCalls[] = {
    {"200", 200, successBody("Merhaba"), "Merhaba", {}, {}},
    {"201", 201, successBody("Merhaba"), "Merhaba", {}, {}},
    {"299", 299, successBody("Merhaba"), "Merhaba", {}, {}},
    {"untrimmed", 200, successBody(" söz\\n"), " söz\n", {}, {}},
    {"onlyFirstChoice",
     200,
     R"({"choices":[{"message":{"content":"a"}},{"message":{"content":"b"}}]})",
     "a",
     {},
     {}},
    {"noChoices", 200, R"({"choices":[]})", {}, Case::emptyResponse, emptyText},
    {"emptyContent", 200, successBody(""), {}, Case::emptyResponse, emptyText},
    {"blankContent",
     200,
     successBody(" \\n\\t\\r \\u00a0\\u2028"),
     {},
     Case::emptyResponse,
     emptyText},
    {"zeroWidthSpaceIsNotBlank", 200, successBody("\\u200b"), "\xE2\x80\x8B", {}, {}},
    {"choicesMissing", 200, R"({"id":"x"})", {}, {}, undecodableText},
    {"contentNull", 200, R"({"choices":[{"message":{"content":null}}]})", {}, {}, undecodableText},
    {"errorBodyOfSuccess", 200, envelope, {}, {}, undecodableText},
    {"pageOfSuccess", 200, page, {}, {}, undecodableText},
    {"emptyBodyOfSuccess", 200, "", {}, {}, undecodableText},
    {"204", 204, "", {}, {}, undecodableText},
    {"300", 300, successBody("x"), {}, Case::api, statusText(300)},
    {"304", 304, "", {}, Case::api, statusText(304)},
    {"400", 400, envelope, {}, Case::api, envelopeText},
    {"401", 401, envelope, {}, Case::api, envelopeText},
    {"401page", 401, page, {}, Case::api, statusText(401)},
    {"403", 403, envelope, {}, Case::api, envelopeText},
    {"404", 404, page, {}, Case::api, statusText(404)},
    {"405", 405, envelope, {}, Case::api, envelopeText},
    {"407", 407, envelope, {}, Case::api, envelopeText},
    {"408", 408, envelope, {}, Case::api, envelopeText},
    {"413", 413, envelope, {}, Case::api, envelopeText},
    {"429", 429, envelope, {}, Case::api, envelopeText},
    {"emptyMessage", 429, R"({"error":{"message":""}})", {}, Case::api, QString()},
    {"messageNoString", 429, R"({"error":{"message":7}})", {}, Case::api, statusText(429)},
    {"500", 500, envelope, {}, Case::api, envelopeText},
    {"501", 501, "", {}, Case::api, statusText(501)},
    {"502", 502, page, {}, Case::api, statusText(502)},
    {"503", 503, "", {}, Case::api, statusText(503)},
    {"599", 599, page, {}, Case::api, statusText(599)},
    {"999", 999, page, {}, Case::api, statusText(999)},
};

/// Knows every session on which a request was made while it lives, whoever owns it.
class UsedSessions : public QObject
{
public:
    UsedSessions() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *session = qobject_cast<QNetworkAccessManager *>(watched);
        if (session != nullptr && event->type() == QEvent::ChildAdded) {
            m_sessions.insert(session);
        }
        return QObject::eventFilter(watched, event);
    }

    [[nodiscard]] std::size_t count() const { return m_sessions.size(); }

    /// The requests under way on all of them.
    [[nodiscard]] QList<QNetworkReply *> requests() const
    {
        QList<QNetworkReply *> all;
        for (const auto *session : m_sessions) {
            all += session->findChildren<QNetworkReply *>();
        }
        return all;
    }

private:
    std::set<const QNetworkAccessManager *> m_sessions;
};

} // namespace

TEST(GroqClient, turnsEachAnswerIntoAReplyOrAnError)
{
    for (const auto &[name, status, body, reply, groqCase, description] : answeredCalls) {
        SCOPED_TRACE(name);
        const LoopbackService service({ScriptedAnswer::http(status, body)});
        const CallEnd end = ClientCall(service).end();
        EXPECT_EQ(end.reply, reply);
        EXPECT_EQ(end.groqCase, groqCase);
        EXPECT_EQ(end.statusCode, groqCase == Case::api ? status : 0);
        EXPECT_EQ(end.description, description);
        EXPECT_EQ(end.failure.has_value(), !reply && !groqCase);
        EXPECT_EQ(service.requestCount(), 1U);
    }
}

TEST(GroqClient, sendsThePostWithItsHeaders)
{
    const LoopbackService service({ScriptedAnswer::http(200, successBody("x"))});
    const ClientCall call(service);
    ASSERT_TRUE(endOf(call.client.complete({ChatMessage::make(Role::user, "Selam"),
                                            ChatMessage::make(Role::assistant, "Merhaba"),
                                            ChatMessage::make(Role::user, " ne \"var\"?\n")},
                                           QStringLiteral(" key with blanks "),
                                           QStringLiteral("llama-3.3-70b-versatile"),
                                           QStringLiteral("Kısa ol.")))
                    .reply);
    const auto requests = service.requests();
    ASSERT_EQ(requests.size(), 1U);
    const RecordedRequest &request = requests[0];
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/openai/v1/chat/completions");
    EXPECT_EQ(request.header("Content-Type"), "application/json");
    EXPECT_EQ(request.header("Content-Length"), QByteArray::number(request.body.size()));
    EXPECT_EQ(request.header("Accept-Encoding"), "identity");
    EXPECT_EQ(request.header("Cookie"), std::nullopt);

    const QJsonObject body = json(request.body);
    EXPECT_EQ(body[u"model"].toString(), u"llama-3.3-70b-versatile");
    EXPECT_EQ(body[u"temperature"].toDouble(), 0.7);
    const QJsonArray messages = body[u"messages"].toArray();
    ASSERT_EQ(messages.size(), 4);
    EXPECT_EQ(messages[0].toObject()[u"role"].toString(), u"system");
    EXPECT_EQ(messages[0].toObject()[u"content"].toString(), u"Kısa ol.");
    EXPECT_EQ(messages[3].toObject()[u"role"].toString(), u"user");
    EXPECT_EQ(messages[3].toObject()[u"content"].toString(), u" ne \"var\"?\n");
}

TEST(GroqClient, sendsTheKeyAsItIs)
{
    const std::pair<QString, QByteArray> keys[] = {
        {QStringLiteral("gsk_abc"), "Bearer gsk_abc"},
        {QStringLiteral("a b"), "Bearer a b"},
        {QStringLiteral("anahtar-ığüşç-😀"), "Bearer anahtar-ığüşç-😀"},
        {QString(), "Bearer"}, // the blank is sent; the service's parser trims the line
    };
    for (const auto &[key, header] : keys) {
        const LoopbackService service({ScriptedAnswer::http(200, successBody("x"))});
        EXPECT_TRUE(endOf(ClientCall(service).started(key)).reply);
        EXPECT_EQ(service.requests().at(0).header("Authorization"), header);
    }
}

TEST(GroqClient, sendsNothingForAKeyWithAControlCharacter)
{
    const QString keys[] = {
        QStringLiteral("a\r\nX-Injected: 1"), QStringLiteral("a\nb"), QStringLiteral("a\r"),
        QStringLiteral("a") + QChar(0),       QStringLiteral("a\tb"), QStringLiteral("a\x7f")};
    const LoopbackService service({ScriptedAnswer::http(200, successBody("x"))});
    for (const QString &key : keys) {
        const CallEnd end = endOf(ClientCall(service).started(key));
        EXPECT_EQ(end.failure, PlatformFailure::requestNotSendable);
        EXPECT_FALSE(end.description.contains(key));
    }
    EXPECT_EQ(service.connectionCount(), 0);
}

TEST(GroqClient, neitherStoresNorSendsCookies)
{
    const LoopbackService service(
        {ScriptedAnswer::http(200, successBody("x"), {{"Set-Cookie", "a=1; Path=/"}})});
    const ClientCall call(service);
    EXPECT_TRUE(call.end().reply);
    EXPECT_TRUE(call.end().reply);
    EXPECT_EQ(service.requests().at(1).header("Cookie"), std::nullopt);
    EXPECT_TRUE(call.session->cookieJar()->cookiesForUrl(service.url()).isEmpty());
}

TEST(GroqClient, answersOverlappingCallsEachWithItsOwn)
{
    // Ten calls are more than the library's connections to one host.
    constexpr int count = 10;
    const LoopbackService service([](const RecordedRequest &request, int) {
        const QByteArray model = json(request.body)[u"model"].toString().toUtf8();
        const QByteArray body = successBody(model);
        // The later ones answer first.
        return ScriptedAnswer()
            .pausing(std::chrono::milliseconds((count - model.size()) * 5))
            .sending("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " +
                     QByteArray::number(body.size()) + "\r\n\r\n" + body)
            .then(ScriptedAnswer::End::close);
    });
    const ClientCall call(service);
    std::vector<QCoro::Task<QByteArray>> tasks;
    tasks.reserve(count);
    for (int i = 0; i < count; ++i) {
        tasks.push_back(call.client.complete({}, ClientCall::testKey(), QString(i, u'm'), {}));
    }
    for (int i = 0; i < count; ++i) {
        const CallEnd end = endOf(std::move(tasks[static_cast<std::size_t>(i)]));
        if (i == 0) {
            EXPECT_EQ(end.groqCase, Case::emptyResponse) << qPrintable(end.description);
        } else {
            EXPECT_EQ(end.reply, QByteArray(i, 'm')) << qPrintable(end.description);
        }
    }
    EXPECT_EQ(service.requestCount(), static_cast<std::size_t>(count));
}

TEST(GroqClient, encodesAndDecodesOnWorkers)
{
    const LoopbackService service({ScriptedAnswer::http(200, successBody("x"))});
    const ClientCall call(service);
    std::optional<Testing::BusyWorkers> busy(std::in_place);
    auto task = call.started();
    EXPECT_TRUE(call.session->findChildren<QNetworkReply *>().isEmpty()) << "a worker encodes";
    busy.reset();
    bool wasDecoded = true;
    QObject afterwards; // with it goes what is left to look at
    // The session hears of the end of the answer before the client does.
    QObject::connect(call.session.get(), &QNetworkAccessManager::finished, &afterwards, [&] {
        busy.emplace();
        const auto look = [&] {
            wasDecoded = task.isReady();
            busy.reset();
        };
        QMetaObject::invokeMethod(&afterwards, look, Qt::QueuedConnection);
    });
    ASSERT_TRUE(awaitedCondition([&] { return task.isReady(); }));
    EXPECT_FALSE(wasDecoded) << "a worker decodes";
    EXPECT_EQ(endOf(std::move(task)).reply, "x");
}

/// Where all that would leave this machine goes to: accepted by the system, never by anyone.
class SilentProxy
{
public:
    SilentProxy()
    {
        EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost));
        m_server.pauseAccepting();
    }

    [[nodiscard]] QNetworkProxy address() const
    {
        return {QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), m_server.serverPort()};
    }

private:
    QTcpServer m_server;
};

/// Settings of a desktop that are slow to say which proxy it is.
class SlowProxySettings : public QNetworkProxyFactory
{
public:
    SlowProxySettings(QNetworkProxy proxy, std::shared_ptr<QSemaphore> answers)
        : m_proxy(std::move(proxy))
        , m_answers(std::move(answers))
    {
    }

    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery & /*query*/) override
    {
        m_answers->acquire();
        return {m_proxy};
    }

private:
    QNetworkProxy m_proxy;
    std::shared_ptr<QSemaphore> m_answers;
};

/// The slow settings are the desktop's while it lives.
class ProxySearch : public testing::Test
{
protected:
    ProxySearch()
    {
        QNetworkProxyFactory::setApplicationProxyFactory(
            new SlowProxySettings(proxy.address(), answers)); // which is taken over
    }

    ~ProxySearch() override
    {
        answers->release(searches);
        waitingThreads().waitForDone();
        QNetworkProxyFactory::setApplicationProxyFactory(nullptr);
    }

    /// Begins a call; its search is under way when this returns.
    QCoro::Task<QByteArray> call(const GroqClient &client)
    {
        ++searches;
        auto reply = client.complete({}, ClientCall::testKey(), QStringLiteral("m"), {});
        EXPECT_TRUE(awaitedCondition([] { return waitingThreads().activeThreadCount() == 1; }));
        return reply;
    }

    const SilentProxy proxy;
    const std::shared_ptr<QSemaphore> answers = std::make_shared<QSemaphore>();
    int searches = 0;
};

TEST_F(ProxySearch, isMadeOnAnotherThread)
{
    const UsedSessions sessions;
    const GroqClient client;
    auto reply = call(client);
    EXPECT_TRUE(sessions.requests().isEmpty());
    answers->release();
    ASSERT_TRUE(awaitedCondition([&] { return sessions.requests().size() == 1; }));
    EXPECT_EQ(sessions.requests().first()->manager()->proxy(), proxy.address());
    client.cancelRequests();
    EXPECT_EQ(endOf(std::move(reply)).failure, PlatformFailure::requestCancelled);
}

TEST_F(ProxySearch, isGivenUpWhenItTakesAsLongAsAServerMayBeSilent)
{
    // Of this machine's own addresses nobody asks where the proxy is.
    const QUrl foreign(QStringLiteral("http://192.0.2.1/chat"));
    const GroqClient client(std::make_shared<QNetworkAccessManager>(), foreign, 100ms);
    EXPECT_EQ(endOf(call(client)).failure, PlatformFailure::timedOut);
    EXPECT_EQ(waitingThreads().activeThreadCount(), 1);
}

TEST_F(ProxySearch, isNotAwaitedByACallThatIsCancelled)
{
    const GroqClient client;
    auto reply = call(client);
    client.cancelRequests();
    EXPECT_EQ(endOf(std::move(reply)).failure, PlatformFailure::requestCancelled);
    EXPECT_EQ(waitingThreads().activeThreadCount(), 1);
}

TEST(GroqClient, asksThePublicEndpointOnASharedSession)
{
    const SilentProxy silent;
    const auto restoring = qScopeGuard(
        [usual = QNetworkProxy::applicationProxy()] { QNetworkProxy::setApplicationProxy(usual); });
    QNetworkProxy::setApplicationProxy(silent.address());

    const UsedSessions sessions;
    const GroqClient one;
    const GroqClient two;
    auto first = one.complete({}, ClientCall::testKey(), QStringLiteral("m"), {});
    auto second = two.complete({}, ClientCall::testKey(), QStringLiteral("m"), {});
    ASSERT_TRUE(awaitedCondition([&] { return sessions.requests().size() == 2; }));
    EXPECT_EQ(sessions.count(), 1U);
    for (const QNetworkReply *request : sessions.requests()) {
        EXPECT_EQ(request->url().toString(),
                  QStringLiteral("https://api.groq.com/openai/v1/chat/completions"));
    }
    one.cancelRequests();
    EXPECT_FALSE(second.isReady()) << "a client cancels its own requests";
    two.cancelRequests();
    EXPECT_EQ(endOf(std::move(first)).failure, PlatformFailure::requestCancelled);
    EXPECT_EQ(endOf(std::move(second)).failure, PlatformFailure::requestCancelled);
}

using GroqClientDeathTest = testing::Test;

TEST(GroqClientDeathTest, endsTheProcessForAnEndpointThatDoesNotParse)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto session = std::make_shared<QNetworkAccessManager>();
    EXPECT_DEATH(GroqClient(session, QUrl(QStringLiteral("http://[broken"))), "not a URL");
    EXPECT_DEATH(GroqClient(session, QUrl(QStringLiteral("/only/a/path"))), "not a URL");
}
