#include "Views/KeySettings.h"

#include "Platform/WaitingThreads.h"
#include "standins/InMemoryItemOperations.h"
#include "support/EventLoop.h"

#include <QThreadPool>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

using namespace Talvo;

TEST(KeySettingsTest, aKeyringThatWaitsLeavesTheThreadsOfOthersAlone)
{
    const std::function<void(KeySettings &)> operations[] = {
        [](KeySettings &settings) { settings.load(); },
        [](KeySettings &settings) { settings.save(); },
        [](KeySettings &settings) { settings.remove(); },
    };
    for (const auto &operation : operations) {
        const auto items = std::make_shared<InMemoryItemOperations>();
        items->closeGate();
        KeySettings settings;
        settings.setKeychain({KeychainStore(items)});
        settings.setApiKey(QStringLiteral("gsk"));
        operation(settings);
        items->waitForCallAtGate();
        QThreadPool &shared = *QThreadPool::globalInstance();
        EXPECT_TRUE(Testing::waitUntil([&] { return shared.activeThreadCount() == 0; }));
        EXPECT_FALSE(settings.canSave());
        items->openGate();
        EXPECT_TRUE(
            Testing::waitUntil([&] { return settings.canSave() || settings.apiKey().isEmpty(); }));
    }
}

TEST(KeySettingsTest, whatTheKeyringAnswersAfterTheSettingsHaveGoneIsDropped)
{
    const auto items = std::make_shared<InMemoryItemOperations>();
    items->closeGate();
    auto settings = std::make_unique<KeySettings>();
    settings->setKeychain({KeychainStore(items)});
    settings->load();
    items->waitForCallAtGate();
    settings.reset();
    items->openGate();
    EXPECT_TRUE(Testing::waitUntil([] { return waitingThreads().activeThreadCount() == 0; }));
}
