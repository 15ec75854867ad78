#pragma once

#include "cli/audit/AuditResult.h"

#include <QString>

#include <functional>
#include <vector>

namespace qir {

struct AuditFile {
    QString name;
    QString trouble; ///< Why it cannot be reached by this name; "" where it can be tried.
};

/// Makes one result for one file; called in a process of its own, with all that it needs made by itself. What it throws
/// is the trouble of that file.
using AuditWork = std::function<AuditResult(const QString &file)>;

/// Has a piece of work done for each file by so many processes at once, and hands over the results in the order of the
/// files. `prepare` makes the work in each process; what it throws is the trouble of every file that would have come to
/// it. A process that dies over a file is that file's trouble, and another one goes on behind it.
void auditInParallel(const std::vector<AuditFile> &files, int processes, const std::function<AuditWork()> &prepare,
                     const std::function<void(const AuditResult &result)> &take);

} // namespace qir
