#include "Keychain/KeychainStore.h"

#include "Keychain/KeyQuery.h"
#include "standins/InMemoryItemOperations.h"
#include "support/EventLoop.h"

#include <QThreadPool>
#include <QtConcurrent>
#include <gtest/gtest.h>

#include <functional>

using namespace Talvo;

namespace {

using Operation = InMemoryItemOperations::Operation;
using Call = InMemoryItemOperations::Call;
using KeychainError = KeychainStore::KeychainError;

class KeychainStoreTest : public testing::Test
{
protected:
    std::shared_ptr<InMemoryItemOperations> keychain = std::make_shared<InMemoryItemOperations>();
    KeychainStore store{keychain};

    /// The error that `action` throws; absent when it throws none.
    static std::optional<KeychainError> errorOf(const std::function<void()> &action)
    {
        try {
            action();
        } catch (const KeychainError &error) {
            return error;
        }
        return std::nullopt;
    }
};

void expectUnhandled(const std::optional<KeychainError> &error, KeychainStatus status)
{
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->errorCase(), KeychainError::Case::unhandled);
    EXPECT_EQ(error->status(), status);
    EXPECT_EQ(error->localizedDescription(),
              QStringLiteral("Anahtar zinciri işlemi başarısız oldu (") + QString::number(status) +
                  QStringLiteral(")."));
}

/// Everything that a keychain refuses with, and two statuses that no table knows.
const std::array refusals = {KeychainStatuses::notAvailable,
                             KeychainStatuses::interactionNotAllowed,
                             KeychainStatuses::userCanceled,
                             KeychainStatuses::authFailed,
                             KeychainStatuses::internalError,
                             KeychainStatus(-1),
                             std::numeric_limits<KeychainStatus>::min()};

} // namespace

TEST_F(KeychainStoreTest, readWithoutItemIsAbsent)
{
    EXPECT_EQ(store.read(), std::nullopt);
    EXPECT_EQ(keychain->calls(), (QList<Call>{{Operation::copyMatching, baseQuery, {}}}));
}

TEST_F(KeychainStoreTest, aKeyComesBackExactlyAsSaved)
{
    const QStringList keys = {
        QStringLiteral("gsk_1234"),
        QStringLiteral("  blanks at both ends \t"),
        QStringLiteral("line\nbreaks\r\n"),
        QStringLiteral(""),
        QStringLiteral("anahtar-ışığı-ÇĞÖŞÜ-é-日本-😀"),
        QStringLiteral("e\u0301"), // not composed to another spelling
        QStringLiteral("\uFEFFbyte-order mark"),
        QString(QChar(u'\0')) + QStringLiteral("after NUL"),
        QString(10'000, u'k'),
    };
    for (const QString &key : keys) {
        store.save(key);
        EXPECT_EQ(keychain->item(baseQuery), key.toUtf8());
        EXPECT_EQ(store.read(), key) << qPrintable(key);
    }
    EXPECT_EQ(keychain->itemCount(), 1);
}

TEST_F(KeychainStoreTest, anEmptyKeyIsStoredAndNotAbsent)
{
    store.save(QString());
    EXPECT_EQ(keychain->item(baseQuery), QByteArray());
    const std::optional<QString> key = store.read();
    ASSERT_TRUE(key.has_value());
    EXPECT_TRUE(key->isEmpty());
}

TEST_F(KeychainStoreTest, savingUpdatesBeforeItAdds)
{
    store.save(QStringLiteral("first"));
    EXPECT_EQ(keychain->calls(), (QList<Call>{{Operation::update, baseQuery, "first"},
                                              {Operation::add, baseQuery, "first"}}));
}

TEST_F(KeychainStoreTest, aSecondSaveOnlyUpdates)
{
    keychain->setItem(baseQuery, "first");
    store.save(QStringLiteral("second"));
    EXPECT_EQ(keychain->calls(), (QList<Call>{{Operation::update, baseQuery, "second"}}));
    EXPECT_EQ(keychain->item(baseQuery), "second");
    EXPECT_EQ(keychain->itemCount(), 1);
}

TEST_F(KeychainStoreTest, removingTakesTheItemAway)
{
    keychain->setItem(baseQuery, "key");
    store.remove();
    EXPECT_EQ(keychain->calls(), (QList<Call>{{Operation::remove, baseQuery, {}}}));
    EXPECT_EQ(store.read(), std::nullopt);
}

TEST_F(KeychainStoreTest, removingNothingSucceeds)
{
    store.remove();
    store.remove();
    EXPECT_EQ(store.read(), std::nullopt);
}

TEST_F(KeychainStoreTest, bytesThatAreNotUtf8AreInvalidData)
{
    const QList<QByteArray> notUtf8 = {
        "\xFF",
        "gsk_\xC3",         // cut off
        "\xE2\x82",         // cut off after two of three
        "\x80",             // continuation alone
        "\xC0\xAF",         // overlong
        "\xED\xA0\x80",     // surrogate
        "\xF4\x90\x80\x80", // beyond U+10FFFF
        "gsk_\xE9_latin1",  // ISO 8859-1
        "valid \xC5\x9F then\xFE",
    };
    for (const QByteArray &data : notUtf8) {
        keychain->setItem(baseQuery, data);
        const auto error = errorOf([&] { (void)store.read(); });
        ASSERT_TRUE(error.has_value()) << data.toHex().constData();
        EXPECT_EQ(error->errorCase(), KeychainError::Case::invalidData);
        EXPECT_EQ(error->status(), 0);
        EXPECT_EQ(error->localizedDescription(),
                  QStringLiteral("Kaydedilen API anahtarı okunamadı."));
    }
}

TEST_F(KeychainStoreTest, aResultThatIsNoBufferIsInvalidData)
{
    keychain->script(Operation::copyMatching, KeychainStatuses::success, std::nullopt);
    const auto error = errorOf([&] { (void)store.read(); });
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->errorCase(), KeychainError::Case::invalidData);
}

TEST_F(KeychainStoreTest, aRefusedReadIsUnhandled)
{
    for (const KeychainStatus status : refusals) {
        keychain->script(Operation::copyMatching, status);
        expectUnhandled(errorOf([&] { (void)store.read(); }), status);
    }
}

TEST_F(KeychainStoreTest, aRefusedUpdateIsUnhandledAndNothingIsAdded)
{
    for (const KeychainStatus status : refusals) {
        keychain->script(Operation::update, status);
        expectUnhandled(errorOf([&] { store.save(QStringLiteral("key")); }), status);
    }
    for (const Call &call : keychain->calls()) {
        EXPECT_EQ(call.operation, Operation::update);
    }
    EXPECT_EQ(keychain->itemCount(), 0);
}

TEST_F(KeychainStoreTest, aRefusedAddIsUnhandled)
{
    for (const KeychainStatus status : refusals) {
        keychain->script(Operation::add, status);
        expectUnhandled(errorOf([&] { store.save(QStringLiteral("key")); }), status);
    }
}

TEST_F(KeychainStoreTest, evenNotFoundIsUnhandledWhenItComesFromAdd)
{
    keychain->script(Operation::add, KeychainStatuses::itemNotFound);
    expectUnhandled(errorOf([&] { store.save(QStringLiteral("key")); }),
                    KeychainStatuses::itemNotFound);
}

TEST_F(KeychainStoreTest, anItemThatSomebodyElseAddsMeanwhileIsUnhandled)
{
    keychain->script(Operation::update, KeychainStatuses::itemNotFound);
    keychain->setItem(baseQuery, "theirs");
    expectUnhandled(errorOf([&] { store.save(QStringLiteral("mine")); }),
                    InMemoryItemOperations::duplicateItem);
    EXPECT_EQ(keychain->item(baseQuery), "theirs");
}

TEST_F(KeychainStoreTest, aRefusedRemovalIsUnhandled)
{
    for (const KeychainStatus status : refusals) {
        keychain->script(Operation::remove, status);
        expectUnhandled(errorOf([&] { store.remove(); }), status);
    }
}

TEST_F(KeychainStoreTest, otherNamesAreAnotherItem)
{
    const KeychainStore other(keychain, QStringLiteral("service"), QStringLiteral("account"));
    other.save(QStringLiteral("theirs"));
    EXPECT_EQ(store.read(), std::nullopt);
    store.save(QStringLiteral("ours"));
    store.remove();
    EXPECT_EQ(other.read(), QStringLiteral("theirs"));
}

TEST_F(KeychainStoreTest, theErrorCrossesAWorkerThreadWithItsType)
{
    keychain->script(Operation::copyMatching, KeychainStatuses::authFailed);
    auto future = QtConcurrent::run([this] { return store.read(); });
    expectUnhandled(errorOf([&] { future.waitForFinished(); }), KeychainStatuses::authFailed);
}

TEST_F(KeychainStoreTest, theGateHoldsACallBack)
{
    keychain->setItem(baseQuery, "key");
    keychain->closeGate();
    auto future = QtConcurrent::run([this] { return store.read(); });
    keychain->waitForCallAtGate();
    EXPECT_FALSE(future.isFinished());
    keychain->openGate();
    EXPECT_EQ(future.result(), QStringLiteral("key"));
}

TEST_F(KeychainStoreTest, aPromptThatWaitsLeavesTheThreadsOfOthersAlone)
{
    keychain->setItem(baseQuery, "key");
    keychain->closeGate();
    QThreadPool &shared = *QThreadPool::globalInstance();
    const qsizetype manyCalls = shared.maxThreadCount() + 1;
    QList<QFuture<std::optional<QString>>> reading;
    for (qsizetype i = 0; i < manyCalls; ++i) {
        reading.append(store.startReading());
    }
    // Nor does one of them hold up another.
    EXPECT_TRUE(Testing::waitUntil([&] { return keychain->calls().size() == manyCalls; }));
    EXPECT_TRUE(Testing::waitUntil([&] { return shared.activeThreadCount() == 0; }));
    keychain->openGate();
    for (const auto &one : reading) {
        EXPECT_EQ(one.result(), QStringLiteral("key"));
    }
}

TEST_F(KeychainStoreTest, whatIsStartedDoesWhatTheCallDoes)
{
    store.startSaving(QStringLiteral("key")).waitForFinished();
    EXPECT_EQ(keychain->item(baseQuery), "key");
    EXPECT_EQ(store.startReading().result(), QStringLiteral("key"));
    store.startRemoving().waitForFinished();
    EXPECT_EQ(keychain->itemCount(), 0);
    EXPECT_EQ(store.startReading().result(), std::nullopt);
}

TEST_F(KeychainStoreTest, whatIsStartedFailsWithTheErrorOfTheCall)
{
    keychain->script(Operation::copyMatching, KeychainStatuses::authFailed);
    keychain->script(Operation::update, KeychainStatuses::userCanceled);
    keychain->script(Operation::remove, KeychainStatuses::notAvailable);
    const auto read = store.startReading();
    expectUnhandled(errorOf([&] { std::ignore = read.result(); }), KeychainStatuses::authFailed);
    auto saving = store.startSaving(QStringLiteral("key"));
    expectUnhandled(errorOf([&] { saving.waitForFinished(); }), KeychainStatuses::userCanceled);
    auto removing = store.startRemoving();
    expectUnhandled(errorOf([&] { removing.waitForFinished(); }), KeychainStatuses::notAvailable);
}
