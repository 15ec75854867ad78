#pragma once

#include "base/state/Remembered.h"
#include "pane/EditorContext.h"

#include <QObject>

#include <functional>

namespace qir {

/// What the user decides about the room of lists, grids and columns, kept from one session to the next.
class Room : public QObject {
    Q_OBJECT

public:
    /// `layOutAnew` lets the panes take the room that they now have.
    Room(EditorContext &editor, Remembered &remembered, std::function<void()> layOutAnew)
        : m_editor(editor)
        , m_remembered(remembered)
        , m_layOutAnew(std::move(layOutAnew)) {}

    /// Their rows for the menus.
    void addCommands();
    void connectPane(int pane);

private:
    void recall();
    void StretchColumnMenu_Click();
    void ListBesideMenu_Click();
    void moveBorder(int pane, int position);
    void noteShare();
    PaneRoom::Placing placing() const;
    void setShare(double share);

    EditorContext &m_editor;
    Remembered &m_remembered;
    std::function<void()> m_layOutAnew;
};

} // namespace qir
