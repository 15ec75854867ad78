#pragma once

#include "base/state/Remembered.h"
#include "pane/EditorContext.h"

#include <QObject>

#include <functional>

QT_BEGIN_NAMESPACE
class QMainWindow;
class QToolBar;
QT_END_NAMESPACE

namespace qir {

/// A bar with the commands used most, off until the user wants it.
class ToolBar : public QObject {
    Q_OBJECT

public:
    /// `layOutAnew` gives the panes the room that is left.
    ToolBar(EditorContext &editor, Remembered &remembered, std::function<void()> layOutAnew)
        : m_editor(editor)
        , m_remembered(remembered)
        , m_layOutAnew(std::move(layOutAnew)) {}

    /// Its row for the menus.
    void addCommands();
    /// Once the menu bar stands.
    void build(QMainWindow &window);

private:
    void ToolBarMenu_Click();

    EditorContext &m_editor;
    Remembered &m_remembered;
    std::function<void()> m_layOutAnew;
    QToolBar *m_bar = nullptr;
};

} // namespace qir
