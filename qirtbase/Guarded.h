#pragma once

#include "base/ErrorWords.h"
#include "qirtbase/clsQirDatabase.h"
#include "qirtbase/model/DatabaseError.h"

#include <exception>

// What every member of the component is made with; for its sources alone.

namespace qir {

[[noreturn]] inline void raise(const QString &text) {
    throw DatabaseError(text);
}

/// Every member that may fail runs in here: an error ends every open group as undone, and lack of memory gets words.
template<class Body>
auto clsQirDatabase::guarded(Body body) -> decltype(body()) {
    try { // costs nothing as long as nothing goes wrong, and this runs millions of times for a table
        return body();
    } catch (const std::exception &error) {
        for (Group &group : m_groups)
            group.failed = true;
        if (isLackOfMemory(error))
            raise(errorWords(error));
        throw;
    }
}

} // namespace qir
