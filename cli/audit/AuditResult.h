#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace qir {

/// What became of one file of an audit.
struct AuditResult {
    enum class State { Same, Different, Trouble };

    /// A table that differs, and in how many cells; nothing where one side lacks it.
    struct Table {
        QString name;
        std::optional<qint64> cells;
    };

    QString file;
    State state = State::Same;
    std::vector<Table> tables; ///< Those that differ.
    QString error;             ///< Of a trouble.

    /// An error that begins with the file's name keeps only the rest.
    static AuditResult trouble(const QString &file, const QString &error);
    /// Reads such a line.
    static Result<AuditResult> ofJson(const QByteArray &line);
    /// {"file": .., "state": .., "tables": {NAME: CELLS, ..}, "error": ..}, with a line end.
    QByteArray json() const;
};

} // namespace qir
