// Against the real GNOME Keyring, on a bus of the test's own.

#include "Keychain/GnomeKeyring.h"
#include "Keychain/KeyQuery.h"
#include "Keychain/KeychainStore.h"
#include "Keychain/PrivateSessionBus.h"
#include "Keychain/SecretServiceConnection.h"
#include "Keychain/SecretServiceItemOperations.h"

#include <QtConcurrent>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <optional>

using namespace Talvo;
using namespace std::chrono_literals;

namespace {

const QStringList toolAttributes{QStringLiteral("service"), baseQuery.service,
                                 QStringLiteral("account"), baseQuery.account};
constexpr auto servicePath = "/org/freedesktop/secrets";
const QByteArray loginCollection = "/org/freedesktop/secrets/collection/login";
const QByteArray sessionCollection = "/org/freedesktop/secrets/collection/session";

class GnomeKeyringTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QStringList missing = GnomeKeyring::missingPrograms();
        if (!PrivateSessionBus::isInstalled()) {
            missing.prepend(QStringLiteral("dbus-daemon"));
        }
        ASSERT_EQ(missing, QStringList()) << "not installed";
        bus.emplace();
        ASSERT_FALSE(bus->address().isEmpty()) << "dbus-daemon does not start";
        keyring.emplace();
    }

    void startUnlocked() { ASSERT_TRUE(keyring->startUnlocked()) << "no gnome-keyring-daemon"; }
    void startLocked() { ASSERT_TRUE(keyring->startLocked()) << "no gnome-keyring-daemon"; }

    [[nodiscard]] static std::shared_ptr<SecretServiceItemOperations>
    operations(const SecretServiceBounds &bounds = {})
    {
        return std::make_shared<SecretServiceItemOperations>(bounds);
    }

    [[nodiscard]] static KeychainStore store() { return KeychainStore(operations()); }

    /// Puts an item with the store's attributes there, beside what there is already.
    void createItem(const QByteArray &collection, const QByteArray &data)
    {
        SecretServiceConnection service({}, {});
        GVariantBuilder properties;
        g_variant_builder_init(&properties, G_VARIANT_TYPE_VARDICT);
        g_variant_builder_add(&properties, "{sv}", "org.freedesktop.Secret.Item.Label",
                              g_variant_new_string("another program's"));
        g_variant_builder_add_parsed(
            &properties, "{'org.freedesktop.Secret.Item.Attributes',"
                         " <{'service': 'com.talvo.groq', 'account': 'groq-api-key'}>}");
        const auto reply = service.call(
            collection, "Collection", "CreateItem",
            g_variant_new("(a{sv}@(oayays)b)", &properties, service.encoded(data), FALSE), "(oo)");
    }

    /// How many items have the store's attributes, locked ones included.
    [[nodiscard]] gsize itemCount() const
    {
        SecretServiceConnection service({}, {});
        const auto reply = service.call(
            servicePath, "Service", "SearchItems",
            g_variant_new_parsed("({'service': 'com.talvo.groq', 'account': 'groq-api-key'},)"),
            "(aoao)");
        const GVariantPointer unlocked(g_variant_get_child_value(reply.get(), 0));
        const GVariantPointer locked(g_variant_get_child_value(reply.get(), 1));
        return g_variant_n_children(unlocked.get()) + g_variant_n_children(locked.get());
    }

    void lock(const QByteArray &collection) const
    {
        SecretServiceConnection service({}, {});
        const auto reply =
            service.call(servicePath, "Service", "Lock",
                         g_variant_new_parsed("([%o],)", collection.constData()), "(aoo)");
    }

    QByteArray lookup()
    {
        return keyring->secretTool(QStringList{QStringLiteral("lookup")} + toolAttributes);
    }

    void storeByTool(const QByteArray &secret)
    {
        keyring->secretTool(QStringList{QStringLiteral("store"), QStringLiteral("--label=tool")} +
                                toolAttributes,
                            secret);
    }

    /// Each operation in turn; all have to give this status.
    void expectEveryOperation(SecretServiceItemOperations &keychain,
                              const testing::Matcher<KeychainStatus> &status)
    {
        EXPECT_THAT(keychain.copyMatching(baseQuery).status, status);
        EXPECT_THAT(keychain.update(baseQuery, "new"), status);
        EXPECT_THAT(keychain.add(baseQuery, "new"), status);
        EXPECT_THAT(keychain.remove(baseQuery), status);
    }

    std::optional<PrivateSessionBus> bus;
    std::optional<GnomeKeyring> keyring;
};

} // namespace

TEST_F(GnomeKeyringTest, withoutItemEveryOperationSaysSo)
{
    startUnlocked();
    EXPECT_EQ(operations()->copyMatching(baseQuery).status, KeychainStatuses::itemNotFound);
    EXPECT_EQ(operations()->update(baseQuery, "key"), KeychainStatuses::itemNotFound);
    EXPECT_EQ(operations()->remove(baseQuery), KeychainStatuses::itemNotFound);
    EXPECT_EQ(store().read(), std::nullopt);
    store().remove();
    EXPECT_EQ(itemCount(), 0U);
}

TEST_F(GnomeKeyringTest, everyKeyComesBackAsSavedAndThereIsOneItem)
{
    startUnlocked();
    const QStringList keys = {
        QStringLiteral("gsk_1234"),
        QStringLiteral("  blanks at both ends \t\n"),
        QStringLiteral(""),
        QStringLiteral("anahtar-ışığı-ÇĞÖŞÜ-日本-😀"),
        QString(QChar(u'\0')) + QStringLiteral("after NUL"),
        QString(10'240, u'k'),
        QStringLiteral("0123456789abcdef"), // a whole block of the session's cipher
    };
    for (const QString &key : keys) {
        store().save(key);
        const std::optional<QString> read = store().read();
        ASSERT_TRUE(read.has_value());
        EXPECT_EQ(*read, key);
        EXPECT_EQ(itemCount(), 1U);
    }
    store().remove();
    EXPECT_EQ(store().read(), std::nullopt);
    EXPECT_EQ(itemCount(), 0U);
}

TEST_F(GnomeKeyringTest, anEmptyKeyIsAddedAsAnItem)
{
    startUnlocked();
    store().save(QString());
    EXPECT_EQ(itemCount(), 1U);
    ASSERT_TRUE(store().read().has_value());
    EXPECT_TRUE(store().read()->isEmpty());
}

TEST_F(GnomeKeyringTest, secretToolFindsTheKey)
{
    startUnlocked();
    store().save(QStringLiteral("ışık"));
    EXPECT_EQ(lookup(), "ışık");
    store().save(QStringLiteral("second"));
    EXPECT_EQ(lookup(), "second");
}

TEST_F(GnomeKeyringTest, aKeyStoredBySecretToolIsTheSameItem)
{
    startUnlocked();
    storeByTool("theirs");
    EXPECT_EQ(store().read(), QStringLiteral("theirs"));
    store().save(QStringLiteral("ours"));
    EXPECT_EQ(itemCount(), 1U);
    EXPECT_EQ(lookup(), "ours");
    store().remove();
    EXPECT_EQ(itemCount(), 0U);
}

TEST_F(GnomeKeyringTest, secretToolReplacesAndClearsTheKey)
{
    startUnlocked();
    store().save(QStringLiteral("ours"));
    storeByTool("theirs");
    EXPECT_EQ(itemCount(), 1U);
    EXPECT_EQ(store().read(), QStringLiteral("theirs"));
    keyring->secretTool(QStringList{QStringLiteral("clear")} + toolAttributes);
    EXPECT_EQ(store().read(), std::nullopt);
}

TEST_F(GnomeKeyringTest, addingTwiceLeavesOneItem)
{
    startUnlocked();
    EXPECT_EQ(operations()->add(baseQuery, "first"), KeychainStatuses::success);
    EXPECT_EQ(operations()->add(baseQuery, "second"), KeychainStatuses::success);
    EXPECT_EQ(itemCount(), 1U);
    EXPECT_EQ(lookup(), "second");
}

TEST_F(GnomeKeyringTest, bytesThatAreNoTextAreGivenBackAndAreInvalidData)
{
    startUnlocked();
    const QByteArray bytes("gsk_\xFF\x00\xC3", 7);
    createItem(loginCollection, bytes);
    EXPECT_EQ(operations()->copyMatching(baseQuery).data, bytes);
    try {
        (void)store().read();
        FAIL() << "read as text";
    } catch (const KeychainStore::KeychainError &error) {
        EXPECT_EQ(error.errorCase(), KeychainStore::KeychainError::Case::invalidData);
    }
    store().save(QStringLiteral("valid"));
    EXPECT_EQ(store().read(), QStringLiteral("valid"));
}

TEST_F(GnomeKeyringTest, ofSeveralItemsTheFirstOfTheDefaultCollectionIsRead)
{
    startUnlocked();
    createItem(sessionCollection, "of the session");
    EXPECT_EQ(store().read(), QStringLiteral("of the session"));
    for (int i = 1; i <= 11; ++i) { // so many that the order of the paths' text is another
        createItem(loginCollection, "login " + QByteArray::number(i));
    }
    EXPECT_EQ(store().read(), QStringLiteral("login 1"));
}

TEST_F(GnomeKeyringTest, savingAndRemovingActOnEveryItem)
{
    startUnlocked();
    createItem(loginCollection, "one");
    createItem(loginCollection, "two");
    createItem(sessionCollection, "three");
    store().save(QStringLiteral("new"));
    EXPECT_EQ(itemCount(), 3U);
    EXPECT_EQ(lookup(), "new");
    EXPECT_EQ(keyring
                  ->secretTool(QStringList{QStringLiteral("search"), QStringLiteral("--all")} +
                               toolAttributes)
                  .count("secret = new"),
              3);
    store().remove();
    EXPECT_EQ(itemCount(), 0U);
}

TEST_F(GnomeKeyringTest, aLockedCollectionThatNobodyCanUnlock)
{
    startUnlocked();
    store().save(QStringLiteral("key"));
    lock(loginCollection);
    const auto refused =
        testing::AnyOf(KeychainStatuses::interactionNotAllowed, KeychainStatuses::userCanceled);
    expectEveryOperation(*operations(), refused);
    EXPECT_EQ(itemCount(), 1U);

    startUnlocked(); // as after the next login
    EXPECT_EQ(store().read(), QStringLiteral("key"));
}

TEST_F(GnomeKeyringTest, aDaemonStartedLockedKnowsOfTheItem)
{
    startUnlocked();
    store().save(QStringLiteral("key"));
    startLocked();
    EXPECT_THAT(
        operations()->copyMatching(baseQuery).status,
        testing::AnyOf(KeychainStatuses::interactionNotAllowed, KeychainStatuses::userCanceled));
}

TEST_F(GnomeKeyringTest, withoutDefaultCollectionNobodyCanMakeOne)
{
    startLocked();
    EXPECT_EQ(store().read(), std::nullopt);
    EXPECT_THAT(
        operations()->add(baseQuery, "key"),
        testing::AnyOf(KeychainStatuses::interactionNotAllowed, KeychainStatuses::userCanceled));
    EXPECT_EQ(itemCount(), 0U);
}

TEST_F(GnomeKeyringTest, aFrozenServiceIsNotAvailableAndUsableAfterwards)
{
    startUnlocked();
    store().save(QStringLiteral("key"));
    keyring->process().sendSignal(SIGSTOP);
    expectEveryOperation(*operations({.call = 200ms}), KeychainStatuses::notAvailable);
    keyring->process().sendSignal(SIGCONT);
    EXPECT_EQ(store().read(), QStringLiteral("key"));
}

TEST_F(GnomeKeyringTest, aRestartedServiceIsUsedAtTheNextCall)
{
    startUnlocked();
    const KeychainStore sameStore = store();
    sameStore.save(QStringLiteral("key"));
    keyring->process().kill();
    EXPECT_EQ(operations()->copyMatching(baseQuery).status, KeychainStatuses::notAvailable);
    startUnlocked();
    EXPECT_EQ(sameStore.read(), QStringLiteral("key"));
    sameStore.save(QStringLiteral("second"));
    EXPECT_EQ(sameStore.read(), QStringLiteral("second"));
}

TEST_F(GnomeKeyringTest, twoThreadsDoNotDisturbEachOther)
{
    startUnlocked();
    const KeychainStore shared = store();
    const auto saveAndRead = [&](const QString &key) {
        for (int i = 0; i < 20; ++i) {
            shared.save(key);
            const std::optional<QString> read = shared.read();
            if (read != QStringLiteral("first") && read != QStringLiteral("second")) {
                return false;
            }
        }
        return true;
    };
    auto first = QtConcurrent::run(saveAndRead, QStringLiteral("first"));
    auto second = QtConcurrent::run(saveAndRead, QStringLiteral("second"));
    EXPECT_TRUE(first.result());
    EXPECT_TRUE(second.result());
    EXPECT_EQ(itemCount(), 1U);
}

TEST_F(GnomeKeyringTest, theSystemsOperationsAreTheSecretServices)
{
    startUnlocked();
    const KeychainStore systemStore;
    systemStore.save(QStringLiteral("key"));
    EXPECT_EQ(lookup(), "key");
}
