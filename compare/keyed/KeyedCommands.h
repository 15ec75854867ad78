#pragma once

#include "compare/keyed/KeyedWindow.h"
#include "pane/EditorContext.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <array>
#include <cstdint>

namespace qir {

/// Mode > Differences by Key: the window beside the main one, and what keeps the two together.
class KeyedCommands : public QObject {
    Q_OBJECT

public:
    explicit KeyedCommands(EditorContext &editor);

    void addCommands();
    /// At the end of each command: a window whose pane was closed goes, one whose tables have changed says so.
    void settle();

private:
    void DifferencesByKeyMenu_Click();
    /// Reads the tables that both panes show, and compares them.
    void refresh();
    void remember(const QStringList &key);
    /// Brings both grids to two records; the grids do not follow each other in it.
    void showRecords(const PairedRecords &records, const FieldPair &field);
    void showRecord(int pane, int record, int field);
    bool windowOpen() const { return m_window != nullptr && m_window->isVisible(); }
    bool isCurrent() const;
    QString pairName() const;
    std::array<std::uint64_t, 2> revisions() const;

    EditorContext &m_editor;
    QPointer<KeyedWindow> m_window; // the main window's child
    QString m_table;                // what the window shows, "" for nothing
    std::array<std::uint64_t, 2> m_revisions{};
    QHash<QString, QStringList> m_keys; // the keys chosen for each pair of files and table
    QTimer m_due;                       // another comparison, once nothing happens for a moment
};

} // namespace qir
