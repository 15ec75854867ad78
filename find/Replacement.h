#pragma once

#include "find/CellFinder.h"

#include <QCoreApplication>

#include <functional>

namespace qir {

class CellDifferences;
class StoredMarks;
class TableLoader;

/// Writing other texts into cells that hit. What would not be stored as it is written is named before, and asked about;
/// then everything is written, one group of changes for each database.
class Replacement {
    Q_DECLARE_TR_FUNCTIONS(Replacement)

public:
    Replacement(EditorContext &editor, const CellFinder &finder, CellDifferences &differences, TableLoader &tables,
                StoredMarks &stored)
        : m_editor(editor)
        , m_finder(finder)
        , m_differences(differences)
        , m_tables(tables)
        , m_stored(stored) {}

    /// Replaces in the current cell. False when the user would not have it.
    bool replaceCurrent(const QString &replacement);
    /// Replaces in every hit. Gives what to say of it. Yields.
    QString replaceAll(const QString &replacement);

private:
    /// A cell of the table that is current in its component, and its new text.
    using Visit = std::function<void(int record, int field, const QString &text)>;
    struct Place {
        int pane;
        QString table;
        bool shown;
    };
    struct Problems {
        std::int64_t count = 0;
        QStringList named;
    };

    std::vector<Place> places() const;
    void visit(const Place &place, const QString &replacement, const Visit &visit);
    void checkTable(const Place &place, const QString &replacement, Problems &problems);
    void checkCell(const Place &place, const HitCell &cell, const QString &text, Problems &problems);
    bool agreed(std::int64_t cells, const Problems &problems) const;
    void writeTable(const Place &place, const QString &replacement);
    void compare(const std::vector<Place> &places);

    EditorContext &m_editor;
    const CellFinder &m_finder;
    CellDifferences &m_differences;
    TableLoader &m_tables;
    StoredMarks &m_stored;
};

} // namespace qir
