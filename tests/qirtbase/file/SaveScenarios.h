#pragma once

#include "qirtbase/file/DatabaseFile.h"
#include "tests/qirtbase/file/StorageSupport.h"
#include "tests/support/FailingFileOps.h"

#include <functional>
#include <ostream>
#include <vector>

namespace qir {

// Every way to load and to save, for tests that let something go wrong in the middle of it.

inline const QString scenarioPassword = QStringLiteral("secret");
inline const QByteArray oldBody = "the old version";
inline const QByteArray newBody = QByteArray("the new version, which is longer than the old one was. ").repeated(4);
inline const QByteArray otherBody = "another program's version";

/// A body of so many bytes, no page of which is like another.
QByteArray unlikePages(qsizetype size);

/// One way to load or save, in a folder of its own.
struct Scenario {
    const char *name;
    QString fileName = QStringLiteral("a.ddb"); ///< The file that the run may change.
    QByteArray before = {};                     ///< Its content before; null for none.
    QString password = {};                      ///< Of the new version, and of the old one where that has one.
    std::function<void(const QString &folder)> prepare = [](const QString &) {};
    /// What is done through the faulty system; ends with a database that tries to save `newBody`, or null.
    std::function<bool(DatabaseFile &file, const QString &folder)> begin;
    bool saves = true;
    bool keepsOther = false;    ///< Another program's version stood there and must still be somewhere.
    bool inPlace = false;       ///< Written in place: what a later open shows counts.
    bool copyElsewhere = false; ///< Its safe copy lies in the state folder.
    std::function<void(HookedFileOps &ops)> lacks = [](HookedFileOps &) {};
};

void PrintTo(const Scenario &scenario, std::ostream *out);

std::vector<Scenario> scenarios();

/// The body in the bytes of a file, null where there is none.
QByteArray bodyIn(const QByteArray &content, const QString &password);

/// testOptions() with a state folder inside the scenario's.
DatabaseFileOptions optionsIn(const QString &folder);

} // namespace qir
