#include "Keychain/SecretServiceItemOperations.h"

#include "Keychain/GLibPointers.h"
#include "Keychain/SecretServiceConnection.h"
#include "Keychain/SecretServiceFailure.h"

#include <QByteArrayList>

#include <algorithm>
#include <system_error>
#include <tuple>

namespace Talvo {

namespace {

constexpr auto servicePath = "/org/freedesktop/secrets";
constexpr auto noObject = "/"; ///< how the service says "none" where a path is due
constexpr auto itemLabel = "Talvo: Groq API anahtarı";
constexpr auto collectionLabel = "Varsayılan anahtar zinciri";

/// The items that a query names, the one that reading takes first.
struct FoundItems
{
    QByteArrayList paths;
    QByteArrayList lockedPaths;
};

QByteArrayList pathList(GVariant *array)
{
    QByteArrayList paths;
    GVariantIter iterator;
    g_variant_iter_init(&iterator, array);
    const char *path = nullptr;
    while (g_variant_iter_next(&iterator, "&o", &path) != 0) {
        paths.append(path);
    }
    return paths;
}

GVariantPointer child(const GVariantPointer &tuple, gsize index)
{
    return GVariantPointer(g_variant_get_child_value(tuple.get(), index));
}

QByteArray pathAt(const GVariantPointer &tuple, gsize index)
{
    return g_variant_get_string(child(tuple, index).get(), nullptr);
}

/// A floating array of object paths.
GVariant *pathArray(const QByteArrayList &paths)
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("ao"));
    for (const QByteArray &path : paths) {
        g_variant_builder_add(&builder, "o", path.constData());
    }
    return g_variant_builder_end(&builder);
}

/// The floating a{ss} of a query: these two attributes and no other, not even a schema's name. So
/// items of every schema are found, and every program finds this one.
GVariant *attributes(const KeychainItemQuery &query)
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("a{ss}"));
    g_variant_builder_add(&builder, "{ss}", "service", query.service.toUtf8().constData());
    g_variant_builder_add(&builder, "{ss}", "account", query.account.toUtf8().constData());
    return g_variant_builder_end(&builder);
}

QByteArray defaultCollection(SecretServiceConnection &service)
{
    const auto reply =
        service.call(servicePath, "Service", "ReadAlias", g_variant_new("(s)", "default"), "(o)");
    return pathAt(reply, 0);
}

FoundItems find(SecretServiceConnection &service, const KeychainItemQuery &query)
{
    const auto reply = service.call(servicePath, "Service", "SearchItems",
                                    g_variant_new("(@a{ss})", attributes(query)), "(aoao)");
    FoundItems found;
    found.lockedPaths = pathList(child(reply, 1).get());
    found.paths = pathList(child(reply, 0).get()) + found.lockedPaths;
    if (found.paths.size() > 1) {
        const QByteArray inDefault = defaultCollection(service) + '/';
        // By length first: ".../9" comes before ".../10".
        const auto rank = [&](const QByteArray &path) {
            return std::tuple(!path.startsWith(inDefault), path.size(), path);
        };
        std::ranges::sort(found.paths, {}, rank);
    }
    return found;
}

/// Unlocks items or collections, with a prompt if the service wants one.
void unlock(SecretServiceConnection &service, const QByteArrayList &paths)
{
    const auto reply = service.call(servicePath, "Service", "Unlock",
                                    g_variant_new("(@ao)", pathArray(paths)), "(aoo)");
    bool isAnyUnlocked = !pathList(child(reply, 0).get()).isEmpty();
    const QByteArray prompt = pathAt(reply, 1);
    if (prompt != noObject) {
        const GVariantPointer result = service.perform(prompt);
        isAnyUnlocked |= g_variant_is_of_type(result.get(), G_VARIANT_TYPE("ao")) != 0 &&
                         g_variant_n_children(result.get()) > 0;
    }
    // If only some were, the operation on the others says so.
    if (!isAnyUnlocked) {
        throw SecretServiceFailure{KeychainStatuses::interactionNotAllowed};
    }
}

void unlockAll(SecretServiceConnection &service, const FoundItems &found)
{
    if (!found.lockedPaths.isEmpty()) {
        unlock(service, found.lockedPaths);
    }
}

/// Makes the default collection; the user chooses its password in a prompt.
QByteArray createDefaultCollection(SecretServiceConnection &service)
{
    GVariantBuilder properties;
    g_variant_builder_init(&properties, G_VARIANT_TYPE("a{sv}"));
    g_variant_builder_add(&properties, "{sv}", "org.freedesktop.Secret.Collection.Label",
                          g_variant_new_string(collectionLabel));
    const auto reply = service.call(servicePath, "Service", "CreateCollection",
                                    g_variant_new("(a{sv}s)", &properties, "default"), "(oo)");
    if (pathAt(reply, 1) == noObject) {
        return pathAt(reply, 0);
    }
    const GVariantPointer result = service.perform(pathAt(reply, 1));
    if (g_variant_is_of_type(result.get(), G_VARIANT_TYPE_OBJECT_PATH) == 0) {
        throw SecretServiceFailure{};
    }
    return g_variant_get_string(result.get(), nullptr);
}

void createItem(SecretServiceConnection &service, const QByteArray &collection,
                const KeychainItemQuery &query, const QByteArray &data)
{
    GVariantBuilder properties;
    g_variant_builder_init(&properties, G_VARIANT_TYPE("a{sv}"));
    g_variant_builder_add(&properties, "{sv}", "org.freedesktop.Secret.Item.Label",
                          g_variant_new_string(itemLabel));
    g_variant_builder_add(&properties, "{sv}", "org.freedesktop.Secret.Item.Attributes",
                          attributes(query));
    // With "replace": should another process add the same item at this moment, one remains.
    const auto reply = service.call(
        collection, "Collection", "CreateItem",
        g_variant_new("(a{sv}@(oayays)b)", &properties, service.encoded(data), TRUE), "(oo)");
    if (pathAt(reply, 1) != noObject) {
        const GVariantPointer result = service.perform(pathAt(reply, 1));
    }
}

QByteArray secretOf(SecretServiceConnection &service, const QByteArray &item)
{
    const auto reply = service.call(item, "Item", "GetSecret",
                                    g_variant_new("(o)", service.sessionPath()), "((oayays))");
    return service.decoded(child(reply, 0).get());
}

void setSecret(SecretServiceConnection &service, const QByteArray &item, const QByteArray &data)
{
    const auto reply = service.call(item, "Item", "SetSecret",
                                    g_variant_new("(@(oayays))", service.encoded(data)), "()");
}

void removeItem(SecretServiceConnection &service, const QByteArray &item)
{
    const auto reply = service.call(item, "Item", "Delete", nullptr, "(o)");
    if (pathAt(reply, 0) != noObject) {
        const GVariantPointer result = service.perform(pathAt(reply, 0));
    }
}

/// Acts on each item. One that another program removed meanwhile is passed over; only when that
/// happened to all of them there was no item.
template <class Action>
KeychainStatus forEachItem(const FoundItems &found, Action action)
{
    KeychainStatus status = KeychainStatuses::itemNotFound;
    for (const QByteArray &item : found.paths) {
        try {
            action(item);
            status = KeychainStatuses::success;
        } catch (const SecretServiceFailure &failure) {
            if (!failure.isMissingObject) {
                throw;
            }
        }
    }
    return status;
}

/// The status of an operation that throws its failures.
template <class Operation>
KeychainStatus statusOf(Operation operation)
{
    try {
        return operation();
    } catch (const SecretServiceFailure &failure) {
        return failure.status;
    } catch (const std::system_error &) { // no thread left for the deadline
        return KeychainStatuses::internalError;
    }
}

} // namespace

SecretServiceItemOperations::SecretServiceItemOperations(const SecretServiceBounds &bounds)
    : m_bounds(bounds)
{
}

KeychainItemOperations::Match
SecretServiceItemOperations::copyMatching(const KeychainItemQuery &query)
{
    Match match;
    match.status = statusOf([&] {
        SecretServiceConnection service(m_bounds, m_prompts.get_token());
        FoundItems found = find(service, query);
        found.paths = found.paths.first(std::min(found.paths.size(), qsizetype(1)));
        return forEachItem(found, [&](const QByteArray &item) {
            if (found.lockedPaths.contains(item)) {
                unlock(service, {item});
            }
            match.data = secretOf(service, item);
        });
    });
    return match;
}

KeychainStatus SecretServiceItemOperations::add(const KeychainItemQuery &query,
                                                const QByteArray &data)
{
    return statusOf([&] {
        SecretServiceConnection service(m_bounds, m_prompts.get_token());
        QByteArray collection = defaultCollection(service);
        if (collection == noObject) {
            collection = createDefaultCollection(service);
        } else {
            unlock(service, {collection});
        }
        createItem(service, collection, query, data);
        return KeychainStatuses::success;
    });
}

KeychainStatus SecretServiceItemOperations::update(const KeychainItemQuery &query,
                                                   const QByteArray &data)
{
    return statusOf([&] {
        SecretServiceConnection service(m_bounds, m_prompts.get_token());
        const FoundItems found = find(service, query);
        unlockAll(service, found);
        return forEachItem(found, [&](const QByteArray &item) { setSecret(service, item, data); });
    });
}

KeychainStatus SecretServiceItemOperations::remove(const KeychainItemQuery &query)
{
    return statusOf([&] {
        SecretServiceConnection service(m_bounds, m_prompts.get_token());
        const FoundItems found = find(service, query);
        unlockAll(service, found);
        return forEachItem(found, [&](const QByteArray &item) { removeItem(service, item); });
    });
}

void SecretServiceItemOperations::stopPrompts()
{
    m_prompts.request_stop();
}

std::shared_ptr<KeychainItemOperations> systemKeychainItemOperations()
{
    return std::make_shared<SecretServiceItemOperations>();
}

} // namespace Talvo
