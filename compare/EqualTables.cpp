#include "compare/EqualTables.h"

#include "base/Collation.h"

namespace qir {

void EqualTables::beginRun() {
    m_keys.clear();
    m_revisions = revisions();
}

void EqualTables::add(const QString &name) {
    m_keys.insert(collationKey(name));
}

bool EqualTables::currentTablesKnownEqual() const {
    const QString left = collationKey(m_editor.pane(0).TabellaCorrente());
    return m_revisions == revisions() && left == collationKey(m_editor.pane(1).TabellaCorrente()) &&
           m_keys.contains(left);
}

std::array<std::uint64_t, 2> EqualTables::revisions() const {
    return {m_editor.OggettoDtb(0).revision(), m_editor.OggettoDtb(1).revision()};
}

} // namespace qir
