#include "Views/KeySettings.h"

#include "Platform/Text.h"
#include "Views/WhenFinished.h"

#include <utility>

namespace Talvo {

KeySettings::KeySettings(QObject *parent)
    : QObject(parent)
{
}

void KeySettings::setApiKey(const QString &apiKey)
{
    if (std::exchange(m_apiKey, apiKey) != apiKey) {
        Q_EMIT apiKeyChanged();
        Q_EMIT permissionsChanged();
    }
}

bool KeySettings::canSave() const
{
    return !m_isBusy && !trimmedOfWhitespaceAndNewlines(m_apiKey).isEmpty();
}

void KeySettings::load()
{
    await(m_keychain.startReading(), [this](const std::optional<QString> &key) {
        // A keychain that asks for its password takes a while: what was typed meanwhile stays.
        if (m_apiKey.isEmpty()) {
            setApiKey(key.value_or(QString()));
        }
    });
}

void KeySettings::save()
{
    if (!canSave()) {
        return;
    }
    const QString key = trimmedOfWhitespaceAndNewlines(m_apiKey).toString();
    await(m_keychain.startSaving(key),
          [this] { setStatus(QStringLiteral("API anahtarı güvenle kaydedildi."), false); });
}

void KeySettings::remove()
{
    if (!canDelete()) {
        return;
    }
    await(m_keychain.startRemoving(), [this] {
        setApiKey({});
        setStatus(QStringLiteral("API anahtarı silindi."), false);
    });
}

template <class Result, class Succeeded>
void KeySettings::await(const QFuture<Result> &work, Succeeded succeeded)
{
    setBusy(true);
    whenFinished(work, this, [this, succeeded](QFuture<Result> finished) {
        setBusy(false);
        try {
            if constexpr (std::is_void_v<Result>) {
                finished.waitForFinished(); // throws what the worker threw
                succeeded();
            } else {
                succeeded(finished.result());
            }
        } catch (const std::exception &error) {
            setStatus(localizedDescription(error), true);
        }
    });
}

void KeySettings::setStatus(const QString &message, bool isError)
{
    m_isError = isError;
    m_statusMessage = message;
    Q_EMIT statusChanged();
}

void KeySettings::setBusy(bool isBusy)
{
    if (std::exchange(m_isBusy, isBusy) != isBusy) {
        Q_EMIT permissionsChanged();
    }
}

} // namespace Talvo
