#pragma once

#include "pane/EditorContext.h"

#include <QHash>
#include <QObject>

namespace qir {

/// How the tables on a line of the two lists stand to each other.
enum class Standing {
    Unknown, ///< There are no two databases, or their lists are not lined up.
    Equal,
    Differ,
    OnlyLeft,
    OnlyRight,
};

/// Which tables differ, line by line: what the marks of the lists say, and those that the marks say nothing of any more
/// because one side has no records and so shows no grid to compare.
class DifferingTables : public QObject {
    Q_OBJECT

public:
    explicit DifferingTables(EditorContext &editor)
        : m_editor(editor) {}

    /// Listens to both lists; to be called once they stand.
    void watchLists();
    /// A command has ended: takes notice of what the grids show.
    void follow();

    /// Whether both databases are open and each line stands for the same table in both lists.
    bool linedUp() const;
    Standing standing(int line) const;
    /// How many tables that both databases have differ.
    int count() const;

Q_SIGNALS:
    /// A line may stand otherwise than before.
    void changed();

private:
    void outdate();
    void update() const;

    EditorContext &m_editor;
    QHash<QString, bool> m_recordsOnOneSide; // by key, of tables whose mark was taken away
    // What update() finds.
    mutable bool m_outdated = true;
    mutable bool m_linedUp = false;
    mutable int m_count = 0;
};

} // namespace qir
