#pragma once

#include "Views/KeychainHandle.h"

#include <QFuture>
#include <QObject>
#include <QQmlEngine>

namespace Talvo {

/// What the settings sheet does: loads, saves and deletes the API key in the keychain, and says how
/// it went. One object for each opening of the sheet.
///
/// GUI thread; the keychain itself is asked on another, because it may in turn ask the user.
/// Results that arrive after this object is gone are dropped.
class KeySettings : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    /// Where the key is kept.
    Q_PROPERTY(Talvo::KeychainHandle keychain READ keychain WRITE setKeychain REQUIRED)
    /// The text of the key field.
    Q_PROPERTY(QString apiKey READ apiKey WRITE setApiKey NOTIFY apiKeyChanged)
    /// How the last operation went, in words for the user.
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusChanged)
    /// True once there is something to say.
    Q_PROPERTY(bool hasStatus READ hasStatus NOTIFY statusChanged)
    /// True when `statusMessage` tells of a failure.
    Q_PROPERTY(bool isError READ isError NOTIFY statusChanged)
    /// The field is not empty, and the keychain is not at work.
    Q_PROPERTY(bool canDelete READ canDelete NOTIFY permissionsChanged)
    /// The field is not blank, and the keychain is not at work.
    Q_PROPERTY(bool canSave READ canSave NOTIFY permissionsChanged)

public:
    explicit KeySettings(QObject *parent = nullptr);

    [[nodiscard]] KeychainHandle keychain() const { return {m_keychain}; }
    void setKeychain(const KeychainHandle &keychain) { m_keychain = keychain.store; }
    [[nodiscard]] const QString &apiKey() const { return m_apiKey; }
    void setApiKey(const QString &apiKey);
    [[nodiscard]] const QString &statusMessage() const { return m_statusMessage; }
    [[nodiscard]] bool hasStatus() const { return !m_statusMessage.isNull(); }
    [[nodiscard]] bool isError() const { return m_isError; }
    [[nodiscard]] bool canDelete() const { return !m_isBusy && !m_apiKey.isEmpty(); }
    [[nodiscard]] bool canSave() const;

    /// Fills the field with the stored key, if there is one and nothing was typed meanwhile.
    Q_INVOKABLE void load();
    /// Stores the trimmed text of the field; the field keeps its text.
    Q_INVOKABLE void save();
    /// Removes the stored key and empties the field.
    Q_INVOKABLE void remove();

Q_SIGNALS:
    void apiKeyChanged();
    void statusChanged();
    void permissionsChanged();

private:
    /// Calls `succeeded` with the result when the keychain is done, or shows its failure.
    template <class Result, class Succeeded>
    void await(const QFuture<Result> &work, Succeeded succeeded);
    void setStatus(const QString &message, bool isError);
    void setBusy(bool isBusy);

    KeychainStore m_keychain{nullptr};
    QString m_apiKey;
    QString m_statusMessage;
    bool m_isError = false;
    bool m_isBusy = false;
};

} // namespace Talvo
