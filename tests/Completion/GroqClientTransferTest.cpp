#include "Completion/ClientCall.h"

#include "Completion/CompletionTransfer.h"

#include <QHostAddress>
#include <QTcpServer>

#include <thread>

using namespace Talvo;
using namespace std::chrono_literals;

using Case = GroqClient::GroqError::Case;
using End = ScriptedAnswer::End;

namespace {

constexpr qint64 bound = CompletionTransfer::maximumBodySize;

QByteArray chunk(const QByteArray &bytes)
{
    return QByteArray::number(bytes.size(), 16) + "\r\n" + bytes + "\r\n";
}

ScriptedAnswer chunkedHead()
{
    return ScriptedAnswer::head(200, {{"Transfer-Encoding", "chunked"}});
}

/// A success body of exactly this size.
QByteArray successBodyOfSize(qint64 size)
{
    const qint64 frame = successBody("").size();
    return successBody(QByteArray(size - frame, 'x'));
}

struct BrokenAnswer
{
    const char *name;
    ScriptedAnswer answer;
    PlatformFailure failure;
};

const BrokenAnswer brokenAnswers[] = {
    {"closedWithoutAnswer", ScriptedAnswer().then(End::close), PlatformFailure::connectionLost},
    {"resetWithoutAnswer", ScriptedAnswer().then(End::reset), PlatformFailure::connectionLost},
    {"closedInTheHead", ScriptedAnswer().sending("HTTP/1.1 200 OK\r\nContent-Le").then(End::close),
     PlatformFailure::connectionLost},
    {"closedBeforeTheBody", ScriptedAnswer::head(200, {{"Content-Length", "100"}}).then(End::close),
     PlatformFailure::connectionLost},
    {"closedInTheBody",
     ScriptedAnswer::head(200, {{"Content-Length", "100"}})
         .sending(successBody("x"))
         .then(End::close),
     PlatformFailure::connectionLost},
    {"closedInTheBodyLater",
     ScriptedAnswer::head(200, {{"Content-Length", "100"}})
         .sending(successBody("x"))
         .pausing(20ms)
         .then(End::close),
     PlatformFailure::connectionLost},
    {"resetInTheBody",
     ScriptedAnswer::head(200, {{"Content-Length", "100"}})
         .sending(successBody("x"))
         .pausing(20ms)
         .then(End::reset),
     PlatformFailure::connectionLost},
    {"closedInAnErrorBody",
     ScriptedAnswer::head(500, {{"Content-Length", "100"}}).sending("{").then(End::close),
     PlatformFailure::connectionLost},
    {"closedInAChunk", chunkedHead().sending("100\r\nabc").then(End::close),
     PlatformFailure::connectionLost},
    {"closedBetweenChunks", chunkedHead().sending(chunk(successBody("x"))).then(End::close),
     PlatformFailure::connectionLost},
    {"closedAfterAnInterimStatus",
     ScriptedAnswer().sending("HTTP/1.1 100 Continue\r\n\r\n").then(End::close),
     PlatformFailure::connectionLost},
    {"anotherProtocol", ScriptedAnswer().sending("SSH-2.0-OpenSSH_9.2\r\n").then(End::hang),
     PlatformFailure::connectionLost},
    {"anotherProtocolThatCloses", ScriptedAnswer().sending("+OK\r\n").then(End::close),
     PlatformFailure::connectionLost},
    {"noVersionNumber", ScriptedAnswer().sending("HTTP/x.y 200 OK\r\n\r\n").then(End::close),
     PlatformFailure::connectionLost},
    {"endlessStatusLine", ScriptedAnswer().sending(QByteArray(10'000, 'x'), 5000).then(End::close),
     PlatformFailure::connectionLost},
    {"noChunkSize", chunkedHead().sending("zz\r\nabc\r\n0\r\n\r\n").then(End::hang),
     PlatformFailure::replyNotDecodable},
    {"chunkSizeOverflows",
     chunkedHead().sending("ffffffffffffffffff\r\nabc\r\n0\r\n\r\n").then(End::hang),
     PlatformFailure::replyNotDecodable},
    {"chunkAboveTheBoundThatNeverComes",
     chunkedHead().sending("7fffffffffffffff\r\nabc").then(End::close),
     PlatformFailure::connectionLost},
    {"chunkWithoutItsEnd", chunkedHead().sending("3\r\nabcXY0\r\n\r\n").then(End::hang),
     PlatformFailure::replyNotDecodable},
    {"lengthIsNoNumber",
     ScriptedAnswer::head(200, {{"Content-Length", "abc"}}).sending("{}").then(End::close),
     PlatformFailure::replyNotDecodable},
    {"lengthIsNegative",
     ScriptedAnswer::head(200, {{"Content-Length", "-2"}}).sending("{}").then(End::close),
     PlatformFailure::replyNotDecodable},
};

} // namespace

TEST(GroqClientTransfer, failsOnceForABrokenAnswerAndNeverSendsTwice)
{
    for (const auto &[name, answer, failure] : brokenAnswers) {
        SCOPED_TRACE(name);
        const LoopbackService service({answer});
        const CallEnd end = ClientCall(service).end();
        EXPECT_EQ(end.failure, failure) << qPrintable(end.description);
        letPass(50ms); // a repetition would come at once
        EXPECT_EQ(service.requestCount(), 1U);
    }
}

TEST(GroqClientTransfer, sendsALargeRequestOnceEvenIfItIsClosedUnanswered)
{
    const LoopbackService service({ScriptedAnswer().then(End::close)});
    const ClientCall call(service);
    const QByteArray content(3LL * 1024 * 1024, 'x');
    const CallEnd end =
        endOf(call.client.complete({ChatMessage::make(ChatMessage::Role::user, content)},
                                   ClientCall::testKey(), QStringLiteral("m"), std::nullopt));
    EXPECT_EQ(end.failure, PlatformFailure::connectionLost);
    letPass(50ms);
    ASSERT_EQ(service.requestCount(), 1U);
    EXPECT_GT(service.requests().at(0).body.size(), content.size());
}

TEST(GroqClientTransfer, takesAnAnswerThatIsNotHttpForAnInvalidResponse)
{
    /// Answers everything with a "data" URL, whose replies have no HTTP status.
    class OtherSession : public QNetworkAccessManager
    {
        QNetworkReply *createRequest(Operation /*operation*/, const QNetworkRequest & /*request*/,
                                     QIODevice * /*data*/) override
        {
            const QUrl url(QStringLiteral("data:application/json,{}"));
            return QNetworkAccessManager::createRequest(GetOperation, QNetworkRequest(url));
        }
    };
    const GroqClient client(std::make_shared<OtherSession>(),
                            QUrl(QStringLiteral("http://127.0.0.1/")));
    const CallEnd end = endOf(client.complete({}, ClientCall::testKey(), QStringLiteral("m"), {}));
    EXPECT_EQ(end.groqCase, Case::invalidResponse) << qPrintable(end.description);
    EXPECT_EQ(end.statusCode, 0);
    EXPECT_EQ(end.description, QStringLiteral("Groq sunucusundan geçersiz bir yanıt alındı."));
}

TEST(GroqClientTransfer, takesAnInterimStatusThatIsHandedOnForAnError)
{
    // The library waits on after 100 only.
    for (const int status : {103, 199}) {
        const LoopbackService service({ScriptedAnswer::head(status, {}).then(End::close)});
        const CallEnd end = ClientCall(service).end();
        EXPECT_EQ(end.groqCase, Case::api) << qPrintable(end.description);
        EXPECT_EQ(end.statusCode, status);
    }
}

TEST(GroqClientTransfer, expectsNoBodyOfAStatusThatHasNone)
{
    for (const int status : {101, 103, 199, 204, 304}) {
        SCOPED_TRACE(status);
        const LoopbackService service(
            {ScriptedAnswer::http(status, R"({"error":{"message":"x"}})").then(End::close)});
        const CallEnd end = ClientCall(service).end();
        if (status == 204) {
            EXPECT_EQ(end.failure, PlatformFailure::replyNotDecodable);
            continue;
        }
        EXPECT_EQ(end.groqCase, Case::api) << qPrintable(end.description);
        EXPECT_EQ(end.statusCode, status);
        EXPECT_EQ(end.description,
                  QStringLiteral("Groq isteği başarısız oldu (HTTP %1).").arg(status));
    }
}

TEST(GroqClientTransfer, readsBodiesHoweverTheyAreCut)
{
    const QByteArray body = successBody("ğüş 👩‍👩‍👧‍👦 çay");
    QByteArray byteByByte;
    for (const char byte : body) {
        byteByByte += chunk(QByteArray(1, byte));
    }
    const std::pair<const char *, ScriptedAnswer> answers[] = {
        {"oneChunkPerByte", chunkedHead().sending(byteByByte + "0\r\n\r\n")},
        {"chunksThatArriveInPieces",
         chunkedHead().dripping(chunk(body.left(40)) + chunk(body.mid(40)) + "0\r\n\r\n", 7, 1ms)},
        {"headInPieces",
         ScriptedAnswer().dripping("HTTP/1.1 200 OK\r\nContent-Length: " +
                                       QByteArray::number(body.size()) + "\r\n\r\n" + body,
                                   5, 1ms)},
        {"endedByTheConnection", ScriptedAnswer::head(200, {}).sending(body).then(End::close)},
        {"http10", ScriptedAnswer().sending("HTTP/1.0 200 OK\r\n\r\n" + body).then(End::close)},
        {"noReasonPhrase",
         ScriptedAnswer().sending("HTTP/1.1 200\r\n\r\n" + body).then(End::close)},
        {"interimFirst", ScriptedAnswer()
                             .sending("HTTP/1.1 100 Continue\r\n\r\n")
                             .pausing(10ms)
                             .sending("HTTP/1.1 200 OK\r\n\r\n" + body)
                             .then(End::close)},
        {"moreThanDeclared", ScriptedAnswer::http(200, body).sending("trailing bytes")},
    };
    for (const auto &[name, answer] : answers) {
        SCOPED_TRACE(name);
        const LoopbackService service({answer});
        const CallEnd end = ClientCall(service).end();
        EXPECT_EQ(end.reply, "ğüş 👩‍👩‍👧‍👦 çay")
            << qPrintable(end.description);
        EXPECT_EQ(service.requestCount(), 1U);
    }
}

TEST(GroqClientTransfer, followsNoRedirect)
{
    const LoopbackService other({ScriptedAnswer::http(200, successBody("tuzak"))});
    for (const int status : {301, 302, 303, 305, 307, 308}) {
        SCOPED_TRACE(status);
        const LoopbackService service(
            {ScriptedAnswer::http(status, "", {{"Location", other.url().toEncoded()}})});
        const CallEnd end = ClientCall(service).end();
        EXPECT_EQ(end.groqCase, Case::api);
        EXPECT_EQ(end.statusCode, status);
        EXPECT_EQ(end.description,
                  QStringLiteral("Groq isteği başarısız oldu (HTTP %1).").arg(status));
        EXPECT_EQ(service.requestCount(), 1U);
    }
    EXPECT_EQ(other.connectionCount(), 0);
}

TEST(GroqClientTransfer, answersNoChallenge)
{
    const QByteArray body = R"({"error":{"message":"Invalid API Key"}})";
    for (const QByteArray &challenge :
         {QByteArrayLiteral("Basic realm=\"x\""), QByteArrayLiteral("Bearer"),
          QByteArrayLiteral("Digest realm=\"x\", nonce=\"1\", qop=\"auth\""),
          QByteArrayLiteral("NTLM"), QByteArrayLiteral("Negotiate")}) {
        SCOPED_TRACE(challenge.constData());
        const LoopbackService service(
            {ScriptedAnswer::http(401, body, {{"WWW-Authenticate", challenge}})});
        const CallEnd end = ClientCall(service).end();
        EXPECT_EQ(end.groqCase, Case::api) << qPrintable(end.description);
        EXPECT_EQ(end.statusCode, 401);
        EXPECT_EQ(end.description, QStringLiteral("Invalid API Key"));
        EXPECT_EQ(service.requestCount(), 1U);
    }
}

TEST(GroqClientTransfer, inflatesNothing)
{
    // A valid gzip member of the text "x".
    const QByteArray gzip = QByteArray::fromHex("1f8b0800000000000003ab000083 16dc8c01000000");
    for (const char *coding : {"gzip", "deflate", "br"}) {
        const LoopbackService service(
            {ScriptedAnswer::http(200, gzip, {{"Content-Encoding", coding}})});
        EXPECT_EQ(ClientCall(service).end().failure, PlatformFailure::replyNotDecodable);
    }
    // The header alone changes nothing in a plain body.
    const LoopbackService service(
        {ScriptedAnswer::http(200, successBody("x"), {{"Content-Encoding", "gzip"}})});
    EXPECT_EQ(ClientCall(service).end().reply, "x");
}

TEST(GroqClientTransfer, acceptsABodyUpToTheBound)
{
    const LoopbackService service({ScriptedAnswer::http(200, successBodyOfSize(bound))});
    const CallEnd end = ClientCall(service).end();
    ASSERT_TRUE(end.reply) << qPrintable(end.description);
    EXPECT_EQ(end.reply->size(), bound - successBody("").size());
}

TEST(GroqClientTransfer, stopsAtABodyAboveTheBound)
{
    const QByteArray block(64LL * 1024, 'x');
    const std::pair<const char *, ScriptedAnswer> answers[] = {
        {"declared", ScriptedAnswer::head(200, {{"Content-Length", QByteArray::number(bound + 1)}})
                         .then(End::hang)},
        {"declaredHuge",
         ScriptedAnswer::head(200, {{"Content-Length", "9000000000000000000"}}).then(End::hang)},
        {"oneByteMore",
         ScriptedAnswer::head(200, {}).sending(successBodyOfSize(bound + 1)).then(End::close)},
        {"streamed", ScriptedAnswer::head(200, {}).sending(block, 1'000'000).then(End::close)},
        {"chunked", chunkedHead().sending(chunk(block), 1'000'000).then(End::close)},
        {"ofAnError", ScriptedAnswer::head(500, {}).sending(block, 1'000'000).then(End::close)},
    };
    for (const auto &[name, answer] : answers) {
        SCOPED_TRACE(name);
        const LoopbackService service({answer});
        const CallEnd end = ClientCall(service).end();
        EXPECT_EQ(end.failure, PlatformFailure::replyTooLarge) << qPrintable(end.description);
        EXPECT_TRUE(awaitedCondition([&] { return service.openConnectionCount() == 0; }));
    }
}

TEST(GroqClientTransfer, stopsAtWhatTheLibraryHoldsBack)
{
    const QByteArray block(64LL * 1024, 'x');
    const auto refusal = [&block](int status, const QByteArray &challenge) {
        return ScriptedAnswer::head(status, {{challenge, "Basic realm=\"x\""}})
            .sending(block, 1'000'000)
            .then(End::close);
    };
    const std::pair<const char *, ScriptedAnswer> answers[] = {
        {"refusal", refusal(401, "X-Nothing")},
        {"challenge", refusal(401, "WWW-Authenticate")},
        {"challengeOfAProxy", refusal(407, "Proxy-Authenticate")},
    };
    for (const auto &[name, answer] : answers) {
        SCOPED_TRACE(name);
        const LoopbackService service({answer});
        const CallEnd end = ClientCall(service).end();
        EXPECT_EQ(end.failure, PlatformFailure::replyTooLarge) << qPrintable(end.description);
        EXPECT_TRUE(awaitedCondition([&] { return service.openConnectionCount() == 0; }));
    }
}

TEST(GroqClientTransfer, isNotFloodedWhileTheThreadIsBusy)
{
    const QByteArray block(64LL * 1024, 'x');
    const std::pair<const char *, ScriptedAnswer> answers[] = {
        {"streamed", ScriptedAnswer::head(200, {}).sending(block, 1'000'000).then(End::close)},
        {"chunked", chunkedHead().sending(chunk(block), 1'000'000).then(End::close)},
    };
    for (const auto &[name, answer] : answers) {
        SCOPED_TRACE(name);
        const LoopbackService service({answer});
        const ClientCall call(service);
        const auto task = call.started();
        ASSERT_TRUE(awaitedCondition([&] { return service.sentByteCount() > 0; }));
        std::this_thread::sleep_for(500ms);
        // What the system itself buffers on both sides counts as sent.
        EXPECT_LT(service.sentByteCount(), bound);
        call.client.cancelRequests();
        EXPECT_TRUE(awaitedCondition([&] { return service.openConnectionCount() == 0; }));
    }
}

TEST(GroqClientTransfer, timesOutWhenNothingArrives)
{
    const QByteArray body = successBody("x");
    const std::pair<const char *, ScriptedAnswer> answers[] = {
        {"noAnswer", ScriptedAnswer().then(End::hang)},
        {"halfAHead", ScriptedAnswer().sending("HTTP/1.1 200 OK\r\nContent-").then(End::hang)},
        {"onlyAHead", ScriptedAnswer::head(200, {{"Content-Length", "100"}}).then(End::hang)},
        {"halfABody",
         ScriptedAnswer::head(200, {{"Content-Length", "100"}}).sending(body).then(End::hang)},
        {"anInterimStatus",
         ScriptedAnswer().sending("HTTP/1.1 100 Continue\r\n\r\n").then(End::hang)},
    };
    for (const auto &[name, answer] : answers) {
        SCOPED_TRACE(name);
        const LoopbackService service({answer});
        const CallEnd end = ClientCall(service, 150ms).end();
        EXPECT_EQ(end.failure, PlatformFailure::timedOut) << qPrintable(end.description);
        EXPECT_EQ(end.description, QStringLiteral("İstek zaman aşımına uğradı."));
        EXPECT_TRUE(awaitedCondition([&] { return service.requestCount() == 1; }));
        EXPECT_TRUE(awaitedCondition([&] { return service.openConnectionCount() == 0; }));
    }
}

TEST(GroqClientTransfer, timesOutWhenTheServiceTakesNoBytes)
{
    // Accepted by the system, never by anyone: the upload fills the buffers and stands still.
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    silent.pauseAccepting();
    QUrl url(QStringLiteral("http://127.0.0.1/"));
    url.setPort(silent.serverPort());
    const ClientCall call(url, 150ms);
    const QByteArray content(16LL * 1024 * 1024, 'x');
    const CallEnd end =
        endOf(call.client.complete({ChatMessage::make(ChatMessage::Role::user, content)},
                                   ClientCall::testKey(), QStringLiteral("m"), std::nullopt));
    EXPECT_EQ(end.failure, PlatformFailure::timedOut);
}

TEST(GroqClientTransfer, doesNotTimeOutWhileBytesArrive)
{
    // 40 pieces, 40 ms apart: in all well above the limit of 800 ms, each pause well below.
    const QByteArray body = successBody(QByteArray(40, 'x'));
    const LoopbackService service(
        {ScriptedAnswer::head(200, {{"Content-Length", QByteArray::number(body.size())}})
             .dripping(body, body.size() / 40, 40ms)});
    const CallEnd end = ClientCall(service, 800ms).end();
    EXPECT_EQ(end.reply, QByteArray(40, 'x')) << qPrintable(end.description);
}

#ifdef Q_OS_LINUX

TEST(GroqClientTransfer, doesNotTimeOutWhileTheLibraryHoldsBackWhatArrives)
{
    // As above, in a head and in a body that the library keeps until they are whole. The service's
    // own connection is one of this process too: more has to come than it has received.
    const QByteArray burst(10'000, 'x');
    const QByteArray drips(400, 'x');
    const QByteArray success = successBody("x");
    const QByteArray length = QByteArray::number(success.size());
    const ScriptedAnswer slowHead =
        ScriptedAnswer()
            .sending("HTTP/1.1 200 OK\r\nX-Filler: " + burst)
            .dripping(drips, 10, 40ms)
            .sending("\r\nContent-Length: " + length + "\r\n\r\n" + success);
    const QByteArray refusal = R"({"error":{"message":")" + burst + drips + R"("}})";
    const ScriptedAnswer slowRefusal =
        ScriptedAnswer::head(401, {{"WWW-Authenticate", "Basic realm=\"x\""},
                                   {"Content-Length", QByteArray::number(refusal.size())}})
            .sending(refusal.chopped(drips.size()))
            .dripping(refusal.last(drips.size()), 10, 40ms);
    EXPECT_EQ(ClientCall(LoopbackService({slowHead}), 800ms).end().reply, "x");
    EXPECT_EQ(ClientCall(LoopbackService({slowRefusal}), 800ms).end().description,
              QString::fromUtf8(burst + drips));
}

TEST(GroqClientTransfer, timesOutWhenWhatTheLibraryHoldsBackGrowsNoMore)
{
    const std::pair<const char *, ScriptedAnswer> answers[] = {
        {"halfAHead", ScriptedAnswer().sending("HTTP/1.1 200 OK\r\nContent-").then(End::hang)},
        {"halfARefusal", ScriptedAnswer::head(401, {{"WWW-Authenticate", "Basic realm=\"x\""},
                                                    {"Content-Length", "100"}})
                             .sending("{")
                             .then(End::hang)},
    };
    for (const auto &[name, answer] : answers) {
        SCOPED_TRACE(name);
        const LoopbackService service({answer});
        EXPECT_EQ(ClientCall(service, 500ms).end().failure, PlatformFailure::timedOut);
    }
}

#endif

TEST(GroqClientTransfer, namesAnAddressWhereNothingListens)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    QUrl url(QStringLiteral("http://127.0.0.1/"));
    url.setPort(server.serverPort());
    server.close();
    EXPECT_EQ(ClientCall(url).end().failure, PlatformFailure::connectionRefused);
}

TEST(GroqClientTransfer, namesAHostThatIsNotFound)
{
    // RFC 6761 keeps this name from ever being one.
    const CallEnd end = ClientCall(QUrl(QStringLiteral("http://talvo.invalid/"))).end();
    EXPECT_EQ(end.failure, PlatformFailure::noConnection);
    EXPECT_EQ(
        end.description,
        QStringLiteral("İnternet bağlantısı kurulamadı. Bağlantını kontrol edip yeniden dene."));
}

TEST(GroqClientTransfer, leavesNoConnectionForTheNextRequest)
{
    // The service would keep its connections; the client is done with each after its answer.
    const LoopbackService service({ScriptedAnswer::http(200, successBody("x"))});
    const ClientCall call(service);
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(call.end().reply, "x");
        EXPECT_EQ(service.requests().back().header("Connection"), "close");
        EXPECT_TRUE(awaitedCondition([&] { return service.openConnectionCount() == 0; }));
        EXPECT_EQ(service.connectionCount(), i);
    }
}

TEST(GroqClientTransfer, sendsAtOnceAfterTheServiceClosedTheConnection)
{
    const LoopbackService service(
        {ScriptedAnswer::http(200, successBody("x"), {{"Connection", "close"}}).then(End::close)});
    const ClientCall call(service);
    for (int i = 1; i <= 20; ++i) {
        EXPECT_EQ(call.end().reply, "x");
        EXPECT_EQ(service.connectionCount(), i);
    }
}

TEST(GroqClientTransfer, recoversAfterALostConnection)
{
    const LoopbackService service({ScriptedAnswer().then(End::close),
                                   ScriptedAnswer().then(End::reset),
                                   ScriptedAnswer::http(200, successBody("x"))});
    const ClientCall call(service);
    EXPECT_EQ(call.end().failure, PlatformFailure::connectionLost);
    EXPECT_EQ(call.end().failure, PlatformFailure::connectionLost);
    EXPECT_EQ(call.end().reply, "x");
    EXPECT_EQ(service.requestCount(), 3U);
}
