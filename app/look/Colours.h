#pragma once

#include "app/look/DesktopColours.h"
#include "base/state/Remembered.h"
#include "pane/EditorContext.h"

#include <QObject>
#include <QPalette>

namespace qir {

/// The colour scheme of the program's windows: the desktop's, or a light or dark one that the user has chosen. What
/// the cells say by colour (white, red, yellow) is the same in all of them.
class Colours : public QObject {
    Q_OBJECT

public:
    Colours(EditorContext &editor, Remembered &remembered);
    Colours(EditorContext &editor, Remembered &remembered, const QDBusConnection &bus);
    /// The platform theme's palette is put back.
    ~Colours() override;

    /// Their rows for the menus.
    void addCommands();

private:
    void choose(const QString &scheme);
    /// Lets the windows have the chosen scheme.
    void apply();

    EditorContext &m_editor;
    Remembered &m_remembered;
    DesktopColours m_desktop;
    QPalette m_given; ///< The platform theme's.
    bool m_own = false;
};

} // namespace qir
