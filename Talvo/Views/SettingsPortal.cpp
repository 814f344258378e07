#include "Views/SettingsPortal.h"

#include "Platform/SessionBusAddress.h"
#include "Views/WhenFinished.h"

#include <QColor>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QtConcurrent>

namespace Talvo {

namespace {

constexpr auto service = "org.freedesktop.portal.Desktop";
constexpr auto path = "/org/freedesktop/portal/desktop";
constexpr auto interface = "org.freedesktop.portal.Settings";

QVariant colour(const QDBusArgument &argument)
{
    if (argument.currentSignature() != u"(ddd)") {
        return {};
    }
    double red = -1;
    double green = -1;
    double blue = -1;
    argument.beginStructure();
    argument >> red >> green >> blue;
    argument.endStructure();
    const auto isChannel = [](double value) { return value >= 0 && value <= 1; };
    // As the portal's documentation has it: a colour out of range is none.
    if (!isChannel(red) || !isChannel(green) || !isChannel(blue)) {
        return QColor();
    }
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green),
                            static_cast<float>(blue));
}

} // namespace

void SettingsPortal::start()
{
    if (!hasSessionBus()) {
        return;
    }
    const auto connecting =
        QtConcurrent::run([] { return QDBusConnection::sessionBus().isConnected(); });
    whenFinished(connecting, this, [this](const QFuture<bool> &isConnected) {
        if (isConnected.result()) {
            listen();
        }
    });
}

void SettingsPortal::listen()
{
    QDBusConnection::sessionBus().connect(QLatin1String(service), QLatin1String(path),
                                          QLatin1String(interface),
                                          QStringLiteral("SettingChanged"), this,
                                          SLOT(settingChanged(QString, QString, QDBusVariant)));
    read(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"));
    read(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("accent-color"));
    read(QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("enable-animations"));
}

void SettingsPortal::read(const QString &space, const QString &key)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(QLatin1String(service), QLatin1String(path),
                                       QLatin1String(interface), QStringLiteral("Read"));
    call << space << key;
    auto *watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, space, key, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        // An error means that this desktop does not know the setting: the palette goes on deciding.
        if (!reply.isError()) {
            settingChanged(space, key, reply.value());
        }
    });
}

void SettingsPortal::settingChanged(const QString &space, const QString &key,
                                    const QDBusVariant &value)
{
    Q_EMIT setting(space, key, unwrapped(value.variant()));
}

QVariant SettingsPortal::unwrapped(const QVariant &value)
{
    QVariant inner = value;
    while (inner.metaType() == QMetaType::fromType<QDBusVariant>()) {
        inner = inner.value<QDBusVariant>().variant();
    }
    if (inner.metaType() == QMetaType::fromType<QDBusArgument>()) {
        return colour(inner.value<QDBusArgument>());
    }
    return inner;
}

} // namespace Talvo
