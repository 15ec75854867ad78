#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

namespace qir {

/// Whether the desktop wants dark windows, as its settings portal tells it: when asked for the first time, and again
/// whenever it changes. A desktop without a portal tells nothing.
class DesktopColours : public QObject {
    Q_OBJECT

public:
    explicit DesktopColours(QDBusConnection bus);

    /// Asks; the answer comes by the signal.
    void ask();
    bool wantsDark() const { return m_dark; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void take(const QVariant &value);

    QDBusConnection m_bus;
    bool m_dark = false;
};

} // namespace qir
