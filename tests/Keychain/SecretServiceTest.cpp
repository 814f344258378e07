// What no real keyring does on request: a bus and a service that answer as a test wants.

#include "Keychain/KeyQuery.h"
#include "Keychain/PrivateSessionBus.h"
#include "Keychain/ScriptedSecretService.h"
#include "Keychain/SecretServiceItemOperations.h"
#include "Keychain/SessionBus.h"

#include <QtConcurrent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <optional>
#include <string>

using namespace Talvo;
using namespace std::chrono_literals;
using PromptEnd = ScriptedSecretService::PromptEnd;
using Kind = ScriptedSecretService::Answer::Kind;

namespace {

const QByteArray lockedItem =
    "(@ao [], [objectpath '/org/freedesktop/secrets/collection/login/1'])";
const QByteArray wantsPrompt = "(@ao [], objectpath '/org/freedesktop/secrets/prompt/1')";
const QByteArray unlockedItem = "[objectpath '/org/freedesktop/secrets/collection/login/1']";

class SecretServiceTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(PrivateSessionBus::isInstalled()) << "there is no dbus-daemon";
        bus.emplace();
        ASSERT_FALSE(bus->address().isEmpty()) << "dbus-daemon does not start";
        service.emplace(bus->address());
    }

    [[nodiscard]] static SecretServiceItemOperations
    operations(const SecretServiceBounds &bounds = {})
    {
        return SecretServiceItemOperations(bounds);
    }

    static void expectEveryOperation(SecretServiceItemOperations &&keychain, KeychainStatus status)
    {
        EXPECT_EQ(keychain.copyMatching(baseQuery).status, status);
        EXPECT_EQ(keychain.update(baseQuery, "new"), status);
        EXPECT_EQ(keychain.add(baseQuery, "new"), status);
        EXPECT_EQ(keychain.remove(baseQuery), status);
    }

    /// The status of a read that another thread has brought up to a prompt, which does not end.
    [[nodiscard]] QFuture<KeychainStatus> readUpToThePrompt()
    {
        service->reply("SearchItems", lockedItem);
        service->reply("Unlock", wantsPrompt);
        service->endPrompt(PromptEnd::never);
        auto status = QtConcurrent::run(
            [] { return operations({.call = 1h, .prompt = 1h}).copyMatching(baseQuery).status; });
        service->waitForCall("Prompt");
        return status;
    }

    /// Whether a call of this method reached the service.
    [[nodiscard]] bool wasCalled(const std::string &method) const
    {
        return std::ranges::any_of(service->calls(), [&](const std::string &call) {
            return call.starts_with(method + '(');
        });
    }

    std::optional<PrivateSessionBus> bus;
    std::optional<ScriptedSecretService> service;
};

} // namespace

TEST_F(SecretServiceTest, anItemIsFoundByExactlyTwoAttributes)
{
    EXPECT_EQ(operations().copyMatching(baseQuery).data, "key");
    EXPECT_THAT(service->calls(),
                testing::ElementsAre(
                    "SearchItems({'service': 'com.talvo.groq', 'account': 'groq-api-key'},)",
                    "GetSecret('/org/freedesktop/secrets/session/1',)"));
}

TEST_F(SecretServiceTest, anItemIsAddedWithLabelAttributesAndContentType)
{
    EXPECT_EQ(operations().add(baseQuery, "AB"), KeychainStatuses::success);
    EXPECT_THAT(
        service->calls(),
        testing::ElementsAre(
            "ReadAlias('default',)", "Unlock(['/org/freedesktop/secrets/collection/login'],)",
            "CreateItem({'org.freedesktop.Secret.Item.Label': <'Talvo: Groq API anahtarı'>, "
            "'org.freedesktop.Secret.Item.Attributes': <{'service': 'com.talvo.groq', "
            "'account': 'groq-api-key'}>}, ('/org/freedesktop/secrets/session/1', [], "
            "[0x41, 0x42], 'text/plain'), true)"));
}

TEST_F(SecretServiceTest, updatingChangesTheDataAndNothingElse)
{
    EXPECT_EQ(operations().update(baseQuery, "AB"), KeychainStatuses::success);
    EXPECT_THAT(
        service->calls(),
        testing::ElementsAre(
            "SearchItems({'service': 'com.talvo.groq', 'account': 'groq-api-key'},)",
            "SetSecret(('/org/freedesktop/secrets/session/1', [], [0x41, 0x42], 'text/plain'),)"));
}

TEST_F(SecretServiceTest, removingDeletesTheItem)
{
    EXPECT_EQ(operations().remove(baseQuery), KeychainStatuses::success);
    EXPECT_TRUE(wasCalled("Delete"));
}

TEST_F(SecretServiceTest, everyErrorOfTheServiceHasItsStatus)
{
    using namespace KeychainStatuses;
    struct Row
    {
        const char *error;
        KeychainStatus status;
    };
    const std::array rows = {
        Row{"org.freedesktop.DBus.Error.AccessDenied", authFailed},
        Row{"org.freedesktop.Secret.Error.IsLocked", interactionNotAllowed},
        Row{"org.freedesktop.Secret.Error.NoSession", internalError},
        Row{"org.freedesktop.DBus.Error.Failed", internalError},
        Row{"org.example.Error.Own", internalError},
        Row{"org.freedesktop.DBus.Error.NoReply", notAvailable},
    };
    for (const Row &row : rows) {
        for (const char *method : {"GetSecret", "SetSecret", "CreateItem", "Delete"}) {
            service->fail(method, row.error);
        }
        SCOPED_TRACE(row.error);
        expectEveryOperation(operations(), row.status);
    }
}

TEST_F(SecretServiceTest, anErrorBeforeTheItemIsNeverTakenForNoItem)
{
    service->fail("SearchItems", "org.freedesktop.DBus.Error.UnknownMethod");
    service->fail("ReadAlias", "org.freedesktop.DBus.Error.UnknownObject");
    expectEveryOperation(operations(), KeychainStatuses::internalError);
    service->fail("OpenSession", "org.freedesktop.DBus.Error.UnknownMethod");
    expectEveryOperation(operations(), KeychainStatuses::internalError);
}

TEST_F(SecretServiceTest, anItemThatVanishesMeanwhileIsNoItem)
{
    for (const char *error :
         {"org.freedesktop.Secret.Error.NoSuchObject", "org.freedesktop.DBus.Error.UnknownObject",
          "org.freedesktop.DBus.Error.UnknownMethod"}) {
        for (const char *method : {"GetSecret", "SetSecret", "Delete"}) {
            service->fail(method, error);
        }
        EXPECT_EQ(operations().copyMatching(baseQuery).status, KeychainStatuses::itemNotFound);
        EXPECT_EQ(operations().update(baseQuery, "new"), KeychainStatuses::itemNotFound);
        EXPECT_EQ(operations().remove(baseQuery), KeychainStatuses::itemNotFound);
    }
}

TEST_F(SecretServiceTest, anAnswerOfAnotherTypeIsAFailure)
{
    service->reply("GetSecret", "('key',)");
    EXPECT_EQ(operations().copyMatching(baseQuery).status, KeychainStatuses::internalError);
    service->reply("GetSecret", "((objectpath '/another/session', @ay [], @ay [], 'text/plain'),)");
    EXPECT_EQ(operations().copyMatching(baseQuery).status, KeychainStatuses::internalError);
    service->reply("SearchItems", "('none',)");
    EXPECT_EQ(operations().update(baseQuery, "new"), KeychainStatuses::internalError);
}

TEST_F(SecretServiceTest, aLockedItemIsReadAfterThePrompt)
{
    service->reply("SearchItems", lockedItem);
    service->reply("Unlock", wantsPrompt);
    service->endPrompt(PromptEnd::completed, unlockedItem);
    const auto match = operations().copyMatching(baseQuery);
    EXPECT_EQ(match.status, KeychainStatuses::success);
    EXPECT_EQ(match.data, "key");
    EXPECT_EQ(operations().update(baseQuery, "new"), KeychainStatuses::success);
    EXPECT_EQ(operations().remove(baseQuery), KeychainStatuses::success);
}

TEST_F(SecretServiceTest, aDismissedPromptIsCanceledAndTouchesNothing)
{
    service->reply("SearchItems", lockedItem);
    service->reply("Unlock", wantsPrompt);
    service->endPrompt(PromptEnd::dismissed);
    expectEveryOperation(operations(), KeychainStatuses::userCanceled);
    for (const char *method : {"GetSecret", "SetSecret", "CreateItem", "Delete"}) {
        EXPECT_FALSE(wasCalled(method)) << method;
    }
}

TEST_F(SecretServiceTest, whatCannotBeUnlockedStaysLocked)
{
    service->reply("SearchItems", lockedItem);
    service->reply("Unlock", "(@ao [], objectpath '/')");
    expectEveryOperation(operations(), KeychainStatuses::interactionNotAllowed);
    service->reply("Unlock", wantsPrompt);
    service->endPrompt(PromptEnd::completed, "@ao []");
    expectEveryOperation(operations(), KeychainStatuses::interactionNotAllowed);
}

TEST_F(SecretServiceTest, aPromptOutlastsTheBoundOfACall)
{
    // The prompt's own bound is the longer one: reaching it shows that the call's did not count.
    service->reply("SearchItems", lockedItem);
    service->reply("Unlock", wantsPrompt);
    service->endPrompt(PromptEnd::never);
    EXPECT_EQ(operations({.call = 1s, .prompt = 1300ms}).copyMatching(baseQuery).status,
              KeychainStatuses::interactionNotAllowed);
    EXPECT_TRUE(wasCalled("Dismiss"));
}

TEST_F(SecretServiceTest, aPromptHoldsUpNoOtherThread)
{
    const QByteArray unlockedFound = "(" + unlockedItem + ", @ao [])";
    auto prompted = readUpToThePrompt();
    service->reply("SearchItems", unlockedFound);
    EXPECT_EQ(operations().copyMatching(baseQuery).data, "key");
    EXPECT_FALSE(prompted.isFinished());
    service->completePrompt(unlockedItem);
    EXPECT_EQ(prompted.result(), KeychainStatuses::success);
}

TEST_F(SecretServiceTest, aPromptIsTakenBackWhenNobodyWantsItAnyMore)
{
    service->reply("SearchItems", lockedItem);
    service->reply("Unlock", wantsPrompt);
    service->endPrompt(PromptEnd::never);
    SecretServiceItemOperations keychain({.call = 1h, .prompt = 1h});
    auto prompted = QtConcurrent::run([&] { return keychain.copyMatching(baseQuery).status; });
    service->waitForCall("Prompt");
    EXPECT_FALSE(wasCalled("Dismiss"));
    keychain.stopPrompts();
    EXPECT_EQ(prompted.result(), KeychainStatuses::interactionNotAllowed);
    EXPECT_TRUE(wasCalled("Dismiss"));
    EXPECT_EQ(keychain.copyMatching(baseQuery).status, KeychainStatuses::interactionNotAllowed)
        << "nor is one waited for that comes later";
}

TEST_F(SecretServiceTest, aServiceThatGoesDuringThePromptIsNotAvailable)
{
    auto prompted = readUpToThePrompt();
    service->leave();
    EXPECT_EQ(prompted.result(), KeychainStatuses::notAvailable);
}

TEST_F(SecretServiceTest, aServiceThatGoesDuringACallIsNotAvailable)
{
    service->answer("GetSecret", {Kind::leave, {}});
    EXPECT_EQ(operations({.call = 1h}).copyMatching(baseQuery).status,
              KeychainStatuses::notAvailable);
}

TEST_F(SecretServiceTest, aServiceThatNeverAnswersIsNotAvailable)
{
    const SecretServiceBounds bounds{.call = 150ms};
    for (const char *method : {"GetSecret", "SetSecret", "CreateItem", "Delete"}) {
        service->answer(method, {Kind::silence, {}});
    }
    expectEveryOperation(operations(bounds), KeychainStatuses::notAvailable);
    service->answer("SearchItems", {Kind::silence, {}});
    service->answer("ReadAlias", {Kind::silence, {}});
    expectEveryOperation(operations(bounds), KeychainStatuses::notAvailable);
    service->answer("OpenSession", {Kind::silence, {}});
    expectEveryOperation(operations(bounds), KeychainStatuses::notAvailable);
}

TEST_F(SecretServiceTest, aDefaultCollectionIsMadeWhenThereIsNone)
{
    service->reply("ReadAlias", "(objectpath '/',)");
    service->reply("CreateCollection",
                   "(objectpath '/', objectpath '/org/freedesktop/secrets/prompt/1')");
    service->endPrompt(PromptEnd::completed,
                       "objectpath '/org/freedesktop/secrets/collection/login'");
    EXPECT_EQ(operations().add(baseQuery, "key"), KeychainStatuses::success);
    EXPECT_TRUE(wasCalled("CreateItem"));
    service->endPrompt(PromptEnd::dismissed);
    EXPECT_EQ(operations().add(baseQuery, "key"), KeychainStatuses::userCanceled);
}

TEST_F(SecretServiceTest, aDefaultCollectionMayBeMadeWithoutAPrompt)
{
    service->reply("ReadAlias", "(objectpath '/',)");
    service->reply("CreateCollection", "(objectpath '/org/freedesktop/secrets/collection/login', "
                                       "objectpath '/')");
    EXPECT_EQ(operations().add(baseQuery, "key"), KeychainStatuses::success);
    EXPECT_TRUE(wasCalled("CreateItem"));
    EXPECT_FALSE(wasCalled("Prompt"));
}

TEST_F(SecretServiceTest, aPromptThatNamesNoCollectionIsAFailure)
{
    service->reply("ReadAlias", "(objectpath '/',)");
    service->reply("CreateCollection",
                   "(objectpath '/', objectpath '/org/freedesktop/secrets/prompt/1')");
    service->endPrompt(PromptEnd::completed, "42");
    EXPECT_EQ(operations().add(baseQuery, "key"), KeychainStatuses::internalError);
    EXPECT_FALSE(wasCalled("CreateItem"));
}

TEST_F(SecretServiceTest, storingAndRemovingMayNeedAPrompt)
{
    service->reply("CreateItem",
                   "(objectpath '/', objectpath '/org/freedesktop/secrets/prompt/1')");
    service->reply("Delete", "(objectpath '/org/freedesktop/secrets/prompt/1',)");
    service->endPrompt(PromptEnd::completed, "objectpath '/org/freedesktop/secrets/item/2'");
    EXPECT_EQ(operations().add(baseQuery, "key"), KeychainStatuses::success);
    EXPECT_EQ(operations().remove(baseQuery), KeychainStatuses::success);
    service->endPrompt(PromptEnd::dismissed);
    EXPECT_EQ(operations().add(baseQuery, "key"), KeychainStatuses::userCanceled);
    EXPECT_EQ(operations().remove(baseQuery), KeychainStatuses::userCanceled);
}

TEST_F(SecretServiceTest, withoutServiceOnTheBusNothingIsAvailable)
{
    service.reset();
    expectEveryOperation(operations(), KeychainStatuses::notAvailable);
}

TEST_F(SecretServiceTest, aFrozenBusIsNotAvailable)
{
    bus->process().sendSignal(SIGSTOP);
    expectEveryOperation(operations({.call = 150ms}), KeychainStatuses::notAvailable);
    bus->process().sendSignal(SIGCONT);
}

TEST_F(SecretServiceTest, aBusThatEndedIsNotAvailable)
{
    bus->process().kill();
    expectEveryOperation(operations(), KeychainStatuses::notAvailable);
}

TEST_F(SecretServiceTest, onlyABusThatKeepsItsClientsWaitingIsMute)
{
    EXPECT_FALSE(isSessionBusMute(1min));
    bus->process().sendSignal(SIGSTOP);
    EXPECT_TRUE(isSessionBusMute(150ms));
    bus->process().sendSignal(SIGCONT);
    EXPECT_FALSE(isSessionBusMute(1min));
    bus->process().kill();
    EXPECT_FALSE(isSessionBusMute(1min)) << "what refuses says so at once";
}

TEST(SystemKeychain, isNotAvailableWhereNoBusListens)
{
    for (const char *address : {"nonsense", "autolaunch:", "unix:path=/nonexistent/bus",
                                "unix:", "tcp:port=x", "unknown:transport=1"}) {
        SCOPED_TRACE(address);
        const ScopedVariable variable("DBUS_SESSION_BUS_ADDRESS", address);
        EXPECT_EQ(systemKeychainItemOperations()->copyMatching(baseQuery).status,
                  KeychainStatuses::notAvailable);
    }
}

TEST(SystemKeychain, isNotAvailableWithoutASessionBus)
{
    const ScopedVariable runtime("XDG_RUNTIME_DIR", std::nullopt);
    const ScopedVariable display("DISPLAY", ":0"); // where a bus would be launched for
    const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
    EXPECT_EQ(systemKeychainItemOperations()->copyMatching(baseQuery).status,
              KeychainStatuses::notAvailable);
}
