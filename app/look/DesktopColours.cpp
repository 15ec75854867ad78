#include "app/look/DesktopColours.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr auto service = "org.freedesktop.portal.Desktop"_L1;
constexpr auto path = "/org/freedesktop/portal/desktop"_L1;
constexpr auto interface = "org.freedesktop.portal.Settings"_L1;
constexpr auto group = "org.freedesktop.appearance"_L1;
constexpr auto key = "color-scheme"_L1;
constexpr auto readMember = "Read"_L1;
constexpr auto changedSignal = "SettingChanged"_L1;
constexpr uint preferDark = 1;

} // namespace

DesktopColours::DesktopColours(QDBusConnection bus)
    : m_bus(std::move(bus)) {
    if (!m_bus.isConnected())
        return;
    m_bus.connect(service, path, interface, changedSignal, this, SLOT(settingChanged(QString, QString, QDBusVariant)));
}

void DesktopColours::ask() {
    if (!m_bus.isConnected())
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, readMember);
    call.setArguments({QString(group), QString(key)});
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        if (const QDBusPendingReply<QDBusVariant> reply = *watcher; !reply.isError())
            take(reply.value().variant());
        watcher->deleteLater();
    });
}

void DesktopColours::settingChanged(const QString &changedGroup, const QString &changedKey, const QDBusVariant &value) {
    if (changedGroup == group && changedKey == key)
        take(value.variant());
}

void DesktopColours::take(const QVariant &value) {
    // Older portals wrap the answer of Read once more.
    const QVariant inner = value.canConvert<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value;
    const bool dark = inner.toUInt() == preferDark;
    if (dark == m_dark)
        return;
    m_dark = dark;
    Q_EMIT changed();
}

} // namespace qir
