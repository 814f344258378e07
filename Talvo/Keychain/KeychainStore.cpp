#include "Keychain/KeychainStore.h"

#include "Platform/SecretMemory.h"
#include "Platform/WaitingThreads.h"

#include <QStringDecoder>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <utility>

namespace Talvo {

namespace {

using KeychainError = KeychainStore::KeychainError;

/// The text of UTF-8 bytes, a byte-order mark included. Throws invalidData for anything else.
QString decodedUtf8(const QByteArray &bytes)
{
    // Stateless: a sequence that is cut off at the end is an error, too.
    using Flag = QStringConverter::Flag;
    QStringDecoder decoder(QStringConverter::Utf8, Flag::Stateless | Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (decoder.hasError()) {
        throw KeychainError::invalidData();
    }
    return text;
}

void throwUnlessSuccess(KeychainStatus status)
{
    if (status != KeychainStatuses::success) {
        throw KeychainError::unhandled(status);
    }
}

} // namespace

KeychainStore::KeychainError::KeychainError(Case errorCase, KeychainStatus status,
                                            const QString &description)
    : TypedError(description)
    , m_case(errorCase)
    , m_status(status)
{
}

KeychainError KeychainError::unhandled(KeychainStatus status)
{
    return {Case::unhandled, status,
            QStringLiteral("Anahtar zinciri işlemi başarısız oldu (%1).").arg(status)};
}

KeychainError KeychainError::invalidData()
{
    return {Case::invalidData, KeychainStatuses::success,
            QStringLiteral("Kaydedilen API anahtarı okunamadı.")};
}

KeychainStore::KeychainStore(std::shared_ptr<KeychainItemOperations> operations, QString service,
                             QString account)
    : m_operations(std::move(operations))
    , m_baseQuery{std::move(service), std::move(account)}
{
}

std::optional<QString> KeychainStore::read() const
{
    KeychainItemOperations::Match match = m_operations->copyMatching(m_baseQuery);
    if (match.status == KeychainStatuses::itemNotFound) {
        return std::nullopt;
    }
    throwUnlessSuccess(match.status);
    if (!match.data) {
        throw KeychainError::invalidData();
    }
    const WipedAtEnd wiped(*match.data);
    return decodedUtf8(*match.data);
}

void KeychainStore::save(const QString &key) const
{
    QByteArray secret = key.toUtf8();
    const WipedAtEnd wiped(secret);
    // Updating first replaces the data of the one item there may be: never are there two.
    const KeychainStatus updated = m_operations->update(m_baseQuery, secret);
    if (updated == KeychainStatuses::itemNotFound) {
        throwUnlessSuccess(m_operations->add(m_baseQuery, secret));
        return;
    }
    throwUnlessSuccess(updated);
}

void KeychainStore::remove() const
{
    const KeychainStatus status = m_operations->remove(m_baseQuery);
    if (status != KeychainStatuses::itemNotFound) {
        throwUnlessSuccess(status);
    }
}

void KeychainStore::stopPrompts() const
{
    m_operations->stopPrompts();
}

QFuture<std::optional<QString>> KeychainStore::startReading() const
{
    return QtConcurrent::run(&waitingThreads(), [store = *this] { return store.read(); });
}

QFuture<void> KeychainStore::startSaving(const QString &key) const
{
    return QtConcurrent::run(&waitingThreads(), [store = *this, key] { store.save(key); });
}

QFuture<void> KeychainStore::startRemoving() const
{
    return QtConcurrent::run(&waitingThreads(), [store = *this] { store.remove(); });
}

} // namespace Talvo
