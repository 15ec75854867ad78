#pragma once

#include "app/DtbEditor.h"
#include "platform/loop/MessageLoop.h"

#include <QTemporaryDir>

namespace qir::bench {

/// The real window (offscreen) with a file of one table "Mixed" open in its left pane, journal and all. One at a time.
class ShownTable {
public:
    explicit ShownTable(int records);

    DtbEditor &window() { return m_window; }
    EditorContext &editor() { return m_window.context(); }
    void choose(Command command);
    /// The table by a column, as its header's pop-up sorts it.
    void sortBy(int column);
    /// Writes a text into a cell as its editor does.
    void edit(int row, int column, const QString &text);

private:
    QTemporaryDir m_folder;
    MessageLoop m_loop;
    DtbEditor m_window;
};

/// Bytes of memory that the process holds now.
std::size_t memoryHeld();
/// Milliseconds of processor time that all threads of the process have taken.
long long processorTime();

} // namespace qir::bench
