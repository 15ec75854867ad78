#pragma once

#include "pane/EditorContext.h"

#include <QCoreApplication>

#include <array>
#include <cstdint>

namespace qir {

class DifferingTables;
class FileSigns;
class StoredMarks;

/// What the status line tells: where a person is, what has changed, what differs.
class StatusState {
    Q_DECLARE_TR_FUNCTIONS(StatusState)

public:
    StatusState(EditorContext &editor, const DifferingTables &tables, const StoredMarks &stored, const FileSigns &signs)
        : m_editor(editor)
        , m_tables(tables)
        , m_stored(stored)
        , m_signs(signs) {}

    /// A command has ended: shows what holds now. Costs the same in a table of any size.
    void show();

private:
    QString left();
    QString right() const;
    QString tableAndRecord(int pane) const;
    QString cell(int pane);
    /// What a field of a type takes: the range of a number, how many of its characters a text has; "" for the others.
    static QString room(int type, int size, const QString &text);
    /// The size of the current cell's field, -1 where it is not known.
    int sizeOfField(int pane);
    QString records() const;

    EditorContext &m_editor;
    const DifferingTables &m_tables;
    const StoredMarks &m_stored;
    const FileSigns &m_signs;
    /// The size of a text field that was asked for last, and when.
    struct KnownSize {
        QString table;
        int field = 0;
        int size = -1; // not known
        std::uint64_t revision = 0;
    };
    std::array<KnownSize, 2> m_sizes;
};

/// A date's text as people write it: "20250913.0605" is "2025-09-13 06:05". Every other text stays as it is.
QString readableDate(const QString &text);

} // namespace qir
