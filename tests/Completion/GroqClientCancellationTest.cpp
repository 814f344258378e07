#include "Completion/ClientCall.h"

using namespace Talvo;
using namespace std::chrono_literals;

using End = ScriptedAnswer::End;

namespace {

const QString cancelledText = QStringLiteral("İstek iptal edildi.");

} // namespace

TEST(GroqClientCancellation, stopsACallThatIsStillEncoded)
{
    const LoopbackService service({ScriptedAnswer::http(200, successBody("x"))});
    const ClientCall call(service);
    auto task = call.started();
    call.client.cancelRequests();
    const CallEnd end = endOf(std::move(task));
    EXPECT_EQ(end.failure, PlatformFailure::requestCancelled);
    EXPECT_EQ(end.description, cancelledText);
    letPass(30ms);
    EXPECT_EQ(service.connectionCount(), 0);
}

TEST(GroqClientCancellation, stopsACallThatWaitsForItsAnswer)
{
    const LoopbackService service({ScriptedAnswer().then(End::hang)});
    const ClientCall call(service);
    auto task = call.started();
    ASSERT_TRUE(awaitedCondition([&] { return service.requestCount() == 1; }));
    call.client.cancelRequests();
    EXPECT_TRUE(task.isReady()) << "ended before cancelRequests() returned";
    EXPECT_EQ(endOf(std::move(task)).failure, PlatformFailure::requestCancelled);
    EXPECT_TRUE(awaitedCondition([&] { return service.openConnectionCount() == 0; }));
}

TEST(GroqClientCancellation, stopsACallWhoseBodyArrives)
{
    const LoopbackService service(
        {ScriptedAnswer::head(200, {}).sending(QByteArray(1000, 'x')).then(End::hang)});
    const ClientCall call(service);
    auto task = call.started();
    ASSERT_TRUE(awaitedCondition([&] { return service.requestCount() == 1; }));
    letPass(30ms);
    call.client.cancelRequests();
    EXPECT_EQ(endOf(std::move(task)).failure, PlatformFailure::requestCancelled);
}

TEST(GroqClientCancellation, stopsACallWhoseBodyIsDecoded)
{
    const LoopbackService service({ScriptedAnswer::http(200, successBody("x"))});
    const ClientCall call(service);
    // The whole body is there: too late for the transfer, in time for what follows it.
    QObject::connect(call.session.get(), &QNetworkAccessManager::finished, call.session.get(),
                     [&call](const QNetworkReply * /*reply*/) { call.client.cancelRequests(); });
    EXPECT_EQ(call.end().failure, PlatformFailure::requestCancelled);
}

TEST(GroqClientCancellation, stopsEveryCallOfTheClientAndOfItsCopiesOnly)
{
    const LoopbackService service({ScriptedAnswer().then(End::hang)});
    const LoopbackService otherService({ScriptedAnswer()
                                            .pausing(50ms)
                                            .sending("HTTP/1.1 200 OK\r\n\r\n" + successBody("x"))
                                            .then(End::close)});
    const ClientCall call(service);
    const GroqClient copy = call.client;
    const GroqClient other(call.session, otherService.url());
    auto one = call.started();
    auto two = call.started();
    auto three = copy.complete({}, ClientCall::testKey(), QStringLiteral("m"), std::nullopt);
    auto four = other.complete({}, ClientCall::testKey(), QStringLiteral("m"), std::nullopt);
    ASSERT_TRUE(awaitedCondition([&] { return service.requestCount() == 3; }));
    call.client.cancelRequests();
    EXPECT_EQ(endOf(std::move(one)).failure, PlatformFailure::requestCancelled);
    EXPECT_EQ(endOf(std::move(two)).failure, PlatformFailure::requestCancelled);
    EXPECT_EQ(endOf(std::move(three)).failure, PlatformFailure::requestCancelled);
    EXPECT_EQ(endOf(std::move(four)).reply, "x");
}

TEST(GroqClientCancellation, leavesLaterCallsAlone)
{
    const LoopbackService service({ScriptedAnswer::http(200, successBody("x"))});
    const ClientCall call(service);
    call.client.cancelRequests();
    EXPECT_EQ(call.end().reply, "x");
    call.client.cancelRequests();
    EXPECT_EQ(call.end().reply, "x");
}

TEST(GroqClientCancellation, isNotTakenForATimeoutOrTheReverse)
{
    const LoopbackService service({ScriptedAnswer().then(End::hang)});
    EXPECT_EQ(ClientCall(service, 100ms).end().failure, PlatformFailure::timedOut);

    const ClientCall call(service, 10s);
    auto task = call.started();
    QTimer::singleShot(50ms, call.session.get(), [&call] { call.client.cancelRequests(); });
    EXPECT_EQ(endOf(std::move(task)).failure, PlatformFailure::requestCancelled);
}

TEST(GroqClientCancellation, mayReleaseTheClientFromACallThatItEnds)
{
    const LoopbackService service({ScriptedAnswer().then(End::hang)});
    auto call = std::make_unique<ClientCall>(service);
    auto task = call->started().then([](const QByteArray &) {},
                                     [&call](const std::exception &) { call.reset(); });
    ASSERT_TRUE(awaitedCondition([&] { return service.requestCount() == 1; }));
    call->client.cancelRequests();
    EXPECT_EQ(call, nullptr);
}

TEST(GroqClientLifetime, aCallOutlivesItsClientAndSession)
{
    const LoopbackService service({ScriptedAnswer()
                                       .pausing(30ms)
                                       .sending("HTTP/1.1 200 OK\r\n\r\n" + successBody("x"))
                                       .then(End::close)});
    auto call = std::make_unique<ClientCall>(service);
    auto task = call->started();
    call.reset();
    EXPECT_EQ(endOf(std::move(task)).reply, "x");
}

TEST(GroqClientLifetime, aCallNobodyAwaitsEndsByItself)
{
    // Left in each of its phases; the sanitizer sees what is not released.
    const LoopbackService service({ScriptedAnswer()
                                       .pausing(20ms)
                                       .sending("HTTP/1.1 200 OK\r\n\r\n" + successBody("x"))
                                       .then(End::close)});
    std::weak_ptr<QNetworkAccessManager> session;
    {
        const ClientCall call(service);
        session = call.session;
        (void)call.started();
        auto waiting = call.started();
        ASSERT_TRUE(awaitedCondition([&] { return service.requestCount() == 2; }));
    }
    EXPECT_TRUE(awaitedCondition([&] { return session.expired(); }));
}

TEST(GroqClientLifetime, aCallNobodyAwaitsCanBeCancelled)
{
    const LoopbackService service({ScriptedAnswer().then(End::hang)});
    std::weak_ptr<QNetworkAccessManager> session;
    {
        const ClientCall call(service);
        session = call.session;
        (void)call.started();
        ASSERT_TRUE(awaitedCondition([&] { return service.requestCount() == 1; }));
        call.client.cancelRequests();
    }
    EXPECT_TRUE(session.expired());
}
