#pragma once

#include "compare/keyed/KeyedWindow.h"
#include "pane/EditorContext.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <array>
#include <cstdint>
#include <functional>

namespace qir {

/// What the window of differences by key asks of others.
struct KeyedActions {
    /// The key that was chosen for a table of these two files, none where none was.
    std::function<QStringList(const QString &table)> rememberedKey;
    std::function<void(const QString &table, const QStringList &key)> rememberKey;
    std::function<void(const CarriedChanges &changes)> carry;
    std::function<void(const QString &table, const KeyedRules &rules)> report;
};

/// Mode > Differences by Key: the window beside the main one, and what keeps the two together.
class KeyedCommands : public QObject {
    Q_OBJECT

public:
    KeyedCommands(EditorContext &editor, KeyedActions actions);

    void addCommands();
    /// At the end of each command: a window whose pane was closed goes, one whose tables have changed says so.
    void settle();

private:
    void DifferencesByKeyMenu_Click();
    /// Reads the tables that both panes show, and compares them.
    void refresh();
    void openWindow();
    void carry(const CarriedChanges &changes);
    /// Brings both grids to two records; the grids do not follow each other in it.
    void showRecords(const PairedRecords &records, const FieldPair &field);
    void showRecord(int pane, int record, int field);
    bool windowOpen() const { return m_window != nullptr && m_window->isVisible(); }
    bool isCurrent() const;
    std::array<std::uint64_t, 2> revisions() const;

    EditorContext &m_editor;
    KeyedActions m_actions;
    QPointer<KeyedWindow> m_window; // the main window's child
    QString m_table;                // what the window shows, "" for nothing
    std::array<std::uint64_t, 2> m_revisions{};
    QTimer m_due; // another comparison, once nothing happens for a moment
};

} // namespace qir
