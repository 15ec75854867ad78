#include "app/look/Colours.h"

#include "app/look/Schemes.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QFileInfo>
#include <QWidget>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr auto choiceKey = "colours"_L1;
constexpr auto systemScheme = "system"_L1;
constexpr auto light = "light"_L1;
constexpr auto dark = "dark"_L1;

/// Asking for the bus where there is none would start one.
bool hasSessionBus() {
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           (!folder.isEmpty() && QFileInfo::exists(folder + u"/bus"_s));
}

} // namespace

Colours::Colours(EditorContext &editor, Remembered &remembered)
    : Colours(editor, remembered, hasSessionBus() ? QDBusConnection::sessionBus() : QDBusConnection(QString())) {}

Colours::Colours(EditorContext &editor, Remembered &remembered, const QDBusConnection &bus)
    : m_editor(editor)
    , m_remembered(remembered)
    , m_desktop(bus)
    , m_given(QApplication::palette()) {
    connect(&m_desktop, &DesktopColours::changed, this, &Colours::apply);
}

Colours::~Colours() {
    if (m_own)
        QApplication::setPalette(QPalette());
}

void Colours::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::ColoursSystemMenu, tr("&System"), [this] { choose(systemScheme); });
    commands.add(Command::ColoursLightMenu, tr("&Light"), [this] { choose(light); });
    commands.add(Command::ColoursDarkMenu, tr("&Dark"), [this] { choose(dark); });
    auto *group = new QActionGroup(m_editor.controls().window);
    const QString chosen = m_remembered.choice(choiceKey, systemScheme);
    for (const auto &[command, scheme] :
         {std::pair(Command::ColoursSystemMenu, systemScheme), std::pair(Command::ColoursLightMenu, light),
          std::pair(Command::ColoursDarkMenu, dark)}) {
        QAction &action = m_editor.controls().action(command);
        action.setCheckable(true);
        action.setChecked(scheme == chosen ||
                          (command == Command::ColoursSystemMenu && chosen != light && chosen != dark));
        group->addAction(&action);
    }
    m_desktop.ask();
    apply();
}

void Colours::choose(const QString &scheme) {
    m_remembered.setChoice(choiceKey, scheme);
    apply();
}

void Colours::apply() {
    if (!m_own)
        m_given = QApplication::palette(); // a platform theme may have changed it
    const EditorControls &controls = m_editor.controls();
    const bool wantsLight = controls.action(Command::ColoursLightMenu).isChecked();
    const bool wantsDark = controls.action(Command::ColoursDarkMenu).isChecked();
    // Where the platform theme brings the desktop's dark colours itself they are the given ones.
    const bool desktopDark = !wantsLight && !wantsDark && m_desktop.wantsDark() && !isDark(m_given);
    const bool own = wantsLight || wantsDark || desktopDark;
    if (!own && !m_own)
        return;
    QApplication::setPalette(own ? (wantsLight ? lightScheme() : darkScheme()) : QPalette()); // the platform theme's
    m_own = own;
}

} // namespace qir
