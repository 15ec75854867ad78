#include "app/look/DesktopColours.h"
#include "app/look/Schemes.h"
#include "tests/window/WindowTest.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// A settings portal as desktops have it.
class Portal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    uint scheme = 0;   // 1 dark, 2 light
    bool wraps = true; // as older portals do

public Q_SLOTS:
    QDBusVariant Read(const QString &group, const QString &key) {
        const bool known = group == u"org.freedesktop.appearance" && key == u"color-scheme";
        const QDBusVariant value(known ? scheme : 99);
        return wraps ? QDBusVariant(QVariant::fromValue(value)) : value;
    }

Q_SIGNALS:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);
};

/// The desktop's wish for dark windows, over a session bus of the test's own.
class PortalTest : public WindowTest {
    Q_OBJECT

    void tell(const QString &key, uint scheme) {
        Q_EMIT m_portal.SettingChanged(u"org.freedesktop.appearance"_s, key, QDBusVariant(scheme));
    }

private Q_SLOTS:
    void initTestCase() {
        const QString program = QStandardPaths::findExecutable(u"dbus-daemon"_s);
        if (program.isEmpty())
            QSKIP("there is no dbus-daemon");
        m_bus.start(program, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
        QVERIFY(m_bus.waitForReadyRead());
        const QString address = QString::fromLatin1(m_bus.readLine().trimmed());
        qputenv("DBUS_SESSION_BUS_ADDRESS", address.toLatin1());
        QDBusConnection desktop = QDBusConnection::connectToBus(address, u"desktop"_s);
        QVERIFY(desktop.isConnected());
        QVERIFY(desktop.registerObject(u"/org/freedesktop/portal/desktop"_s, &m_portal,
                                       QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals));
        QVERIFY(desktop.registerService(u"org.freedesktop.portal.Desktop"_s));
    }

    void cleanupTestCase() {
        QDBusConnection::disconnectFromBus(u"desktop"_s);
        m_bus.kill();
        m_bus.waitForFinished();
    }

    void theWishIsAskedFor_data() {
        QTest::addColumn<bool>("wraps");
        QTest::addColumn<uint>("scheme");
        QTest::newRow("dark") << false << 1U;
        QTest::newRow("dark, wrapped once more") << true << 1U;
    }

    void theWishIsAskedFor() {
        QFETCH(bool, wraps);
        QFETCH(uint, scheme);
        m_portal.wraps = wraps;
        m_portal.scheme = scheme;
        DesktopColours colours(QDBusConnection::sessionBus());
        QVERIFY(!colours.wantsDark());
        colours.ask();
        QTRY_VERIFY(colours.wantsDark());
    }

    void windowsFollowTheDesktopWhileTheyStand() {
        m_portal.scheme = 1;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        QTRY_VERIFY(isDark(fixture.window().palette()));
        tell(u"color-scheme"_s, 2);
        QTRY_VERIFY(!isDark(fixture.window().palette()));
        tell(u"another-key"_s, 1);
        tell(u"color-scheme"_s, 1);
        QTRY_VERIFY(isDark(fixture.window().palette()));
        // What the user has chosen comes before the desktop's wish.
        fixture.choose(Command::ColoursLightMenu);
        QTRY_VERIFY(!isDark(fixture.window().palette()));
        tell(u"color-scheme"_s, 0);
        tell(u"color-scheme"_s, 1);
        fixture.choose(Command::ColoursSystemMenu);
        QTRY_VERIFY(isDark(fixture.window().palette()));
    }

    void withoutABusNothingIsToldAndNothingFails() {
        DesktopColours colours{QDBusConnection(u"no such bus"_s)};
        colours.ask();
        QVERIFY(!colours.wantsDark());
    }

private:
    QProcess m_bus;
    Portal m_portal;
};

QTEST_MAIN(PortalTest)
#include "portal_test.moc"
