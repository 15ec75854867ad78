#pragma once

#include "pane/EditorContext.h"
#include "platform/grid/Grid.h"

#include <QObject>

#include <array>
#include <optional>

namespace qir {

class CellDifferences;

/// Mode > Only Differences: both grids show the records and fields that differ and no others, as long as they show the
/// same table. Records keep their numbers.
///
/// What is shown is decided anew by each comparison of the tables. In between nothing goes out of sight: a record that
/// an edit has made equal stays where it is, and a cell that is gone to (by its number, by a search, by taking a step
/// back) comes into sight.
class OnlyDifferences : public QObject {
    Q_OBJECT

public:
    OnlyDifferences(EditorContext &editor, CellDifferences &differences);

    void addCommands();
    /// To be called once, when the grids stand.
    void connectGrids();
    /// At the end of each command: the grids show what they are to, and what cannot be done meanwhile is disabled.
    void follow();

    bool on() const { return m_on; }

private:
    /// What a grid is to be again afterwards.
    struct Before {
        QString table;
        GridPlace place;
        GridSelection left; ///< What this view has left selected: anything else the person has chosen meanwhile.
    };

    void OnlyDifferencesMenu_Click();
    bool comparable() const;
    /// Shows what differs by the last comparison.
    void apply();
    void noteBefore(int pane);
    /// Whether the person has gone somewhere since.
    bool hasMoved(int pane) const;
    void showWhole();
    void showWhole(int pane, bool moved);
    void leave();
    void tellState();
    void disableCommands(bool disable);

    EditorContext &m_editor;
    CellDifferences &m_differences;
    bool m_on = false;
    bool m_disabled = false;
    std::array<std::optional<Before>, 2> m_before;
};

} // namespace qir
