#pragma once

#include <QString>

namespace qir {

class EditorContext;

/// Enables the field and record commands by the active pane's grid: removal of a field, of a record, resizing of a text
/// field.
class GridCommands {
public:
    /// By what the active pane shows now.
    void enable(EditorContext &editor);
    /// The same, but only when the active pane, its table or its current column has changed since, or a grid was
    /// filled: a command that moves nothing asks nothing of the component.
    void follow(EditorContext &editor);
    /// A grid was filled: what the commands were enabled for may have another shape.
    void gridFilled() { m_place = {}; }

private:
    /// Where the commands would work; no table where there is none to work on.
    struct Place {
        int pane = -1;
        QString table;
        int field = 0;
        friend bool operator==(const Place &, const Place &) = default;
    };

    static Place placeNow(const EditorContext &editor);

    Place m_place; // no pane: not known
};

} // namespace qir
