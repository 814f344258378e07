#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QVariant>

namespace Talvo {

/// Client of org.freedesktop.portal.Settings on the session bus.
///
/// Connecting to the bus happens on a worker thread and reading is asynchronous, so neither a slow
/// bus nor a portal that hangs holds the window up. Without a bus it stays silent; it never starts
/// one. GUI thread only.
class SettingsPortal : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Asks for the settings of interest and for word of their changes.
    void start();

    /// A value without the layers of variants that the bus puts around it; a colour given as three
    /// numbers from 0 to 1 becomes a QColor, one outside that range an invalid QVariant.
    [[nodiscard]] static QVariant unwrapped(const QVariant &value);

Q_SIGNALS:
    /// A setting was read or has changed. @param value as `unwrapped` gives it.
    void setting(const QString &space, const QString &key, const QVariant &value);

private Q_SLOTS:
    void settingChanged(const QString &space, const QString &key, const QDBusVariant &value);

private:
    void listen();
    void read(const QString &space, const QString &key);
};

} // namespace Talvo
