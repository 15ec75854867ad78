#pragma once

#include "base/Result.h"
#include "cli/Subcommand.h"
#include "compare/report/DatabaseDifference.h"

#include <string>
#include <vector>

namespace qir {

/// A key as it is given: [TABLE:]FIELD[,FIELD..]. A backslash before ":", "," or "\" takes it for a part of the name.
Result<ChosenKey> parseKey(const QString &text);

/// The keys of a file, TABLE:FIELD,.. in each line; empty lines and those that begin with "#" are none. Throws
/// FileError.
std::vector<ChosenKey> readKeyFile(const QString &file);

/// The options by which commands are told how to compare.
class ComparisonArguments {
public:
    /// --key and --key-file.
    void addKeys(Subcommand &command);
    /// --ignore, --ignore-case, --ignore-blanks and --tolerance.
    void addTolerance(Subcommand &command);
    /// --table.
    void addTables(Subcommand &command);

    bool byKey() const { return !m_keys.empty() || !m_keyFiles.empty(); }
    /// Whether values that differ may count as the same, or are not looked at.
    bool leavesOut() const { return !m_ignore.empty() || m_ignoreCase || m_ignoreBlanks || !m_tolerance.empty(); }
    /// As they were given. Throws WrongChoice for a key that cannot be one, FileError for a file that cannot be read.
    ComparisonChoice choice() const;

private:
    std::vector<std::string> m_keys;
    std::vector<std::string> m_keyFiles;
    std::vector<std::string> m_ignore;
    std::vector<std::string> m_tables;
    bool m_ignoreCase = false;
    bool m_ignoreBlanks = false;
    std::string m_tolerance;
};

} // namespace qir
