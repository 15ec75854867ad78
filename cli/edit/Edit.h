#pragma once

#include "db/QirDatabase.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

namespace qir {

/// What an edit works on besides its words.
struct EditSurroundings {
    const QirDatabase &database;
    /// Opens the database that a table is copied from, or gives `database` where that is its file; it stays open.
    std::function<const QirDatabase &(const QString &file)> open;
    QByteArray &out; ///< What is to be printed.
    bool json = false;
};

/// Carries out one edit, in memory: "set", TABLE, RECORD, FIELD, VALUE and so on, the words of a command line without
/// the program and the file. Throws NoAnswer where no record is named, std::runtime_error for words that are none of
/// an edit, and what the component throws; part of the edit may be done then.
void applyEdit(const EditSurroundings &surroundings, const QStringList &words);

} // namespace qir
