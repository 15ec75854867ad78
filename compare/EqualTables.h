#pragma once

#include "pane/EditorContext.h"

#include <QSet>

#include <array>
#include <cstdint>

namespace qir {

/// The tables that were found equal in both databases: comparing them again reads nothing, as long as neither database
/// was written to since.
class EqualTables {
public:
    explicit EqualTables(EditorContext &editor)
        : m_editor(editor) {}

    /// All tables are about to be compared: nothing is known from before.
    void beginRun();
    /// A table was found equal in this run.
    void add(const QString &name);
    /// Whether the tables that are current in the two components are known to be equal.
    bool currentTablesKnownEqual() const;

private:
    std::array<std::uint64_t, 2> revisions() const;

    EditorContext &m_editor;
    QSet<QString> m_keys;
    std::array<std::uint64_t, 2> m_revisions{};
};

} // namespace qir
