#pragma once

#include <QString>

namespace qir {

/// True when two names are the same but for case and surrounding blanks: a new table or field may not take the name.
inline bool sameName(const QString &first, const QString &second) {
    return first.toUpper().trimmed() == second.toUpper().trimmed();
}

} // namespace qir
