#include "Keychain/SecItemOperations.h"

#include <CoreFoundation/CoreFoundation.h>
#include <Security/Security.h>

#include <memory>
#include <type_traits>

namespace Talvo {

namespace {

struct Releaser
{
    void operator()(CFTypeRef object) const noexcept { CFRelease(object); }
};

/// Owns one reference to a Core Foundation object.
template <class Ref>
using CFPointer = std::unique_ptr<std::remove_pointer_t<Ref>, Releaser>;

CFPointer<CFMutableDictionaryRef> emptyDictionary()
{
    return CFPointer<CFMutableDictionaryRef>(CFDictionaryCreateMutable(
        nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
}

CFPointer<CFMutableDictionaryRef> baseQuery(const KeychainItemQuery &query)
{
    const CFPointer<CFStringRef> service(query.service.toCFString());
    const CFPointer<CFStringRef> account(query.account.toCFString());
    auto dictionary = emptyDictionary();
    CFDictionarySetValue(dictionary.get(), kSecClass, kSecClassGenericPassword);
    CFDictionarySetValue(dictionary.get(), kSecAttrService, service.get());
    CFDictionarySetValue(dictionary.get(), kSecAttrAccount, account.get());
    return dictionary;
}

void setValueData(CFMutableDictionaryRef dictionary, const QByteArray &data)
{
    const CFPointer<CFDataRef> value(data.toCFData());
    CFDictionarySetValue(dictionary, kSecValueData, value.get());
}

} // namespace

KeychainItemOperations::Match SecItemOperations::copyMatching(const KeychainItemQuery &query)
{
    const auto dictionary = baseQuery(query);
    CFDictionarySetValue(dictionary.get(), kSecReturnData, kCFBooleanTrue);
    CFDictionarySetValue(dictionary.get(), kSecMatchLimit, kSecMatchLimitOne);
    CFTypeRef found = nullptr;
    Match match;
    match.status = SecItemCopyMatching(dictionary.get(), &found);
    const CFPointer<CFTypeRef> result(found);
    if (match.status == errSecSuccess && result && CFGetTypeID(found) == CFDataGetTypeID()) {
        match.data = QByteArray::fromCFData(static_cast<CFDataRef>(found));
    }
    return match;
}

KeychainStatus SecItemOperations::add(const KeychainItemQuery &query, const QByteArray &data)
{
    const auto dictionary = baseQuery(query);
    setValueData(dictionary.get(), data);
    return SecItemAdd(dictionary.get(), nullptr);
}

KeychainStatus SecItemOperations::update(const KeychainItemQuery &query, const QByteArray &data)
{
    const auto changes = emptyDictionary();
    setValueData(changes.get(), data);
    return SecItemUpdate(baseQuery(query).get(), changes.get());
}

KeychainStatus SecItemOperations::remove(const KeychainItemQuery &query)
{
    return SecItemDelete(baseQuery(query).get());
}

std::shared_ptr<KeychainItemOperations> systemKeychainItemOperations()
{
    return std::make_shared<SecItemOperations>();
}

} // namespace Talvo
