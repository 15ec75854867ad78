#pragma once

#include "base/ArgumentTexts.h"
#include "cli/Subcommand.h"

#include <QString>

#include <string>

namespace qir {

// Each adds its command to the program; parsing the arguments runs it. What it throws is shown and is Exit::Trouble;
// any other answer than Exit::Done goes into `exit`.

void addAdd(CLI::App &program, Exit &exit);
void addAudit(CLI::App &program, Exit &exit);
void addCopy(CLI::App &program, Exit &exit);
void addCreate(CLI::App &program, Exit &exit);
void addDiff(CLI::App &program, Exit &exit);
void addDump(CLI::App &program, Exit &exit);
void addExport(CLI::App &program, Exit &exit);
void addGet(CLI::App &program, Exit &exit);
void addImport(CLI::App &program, Exit &exit);
void addInfo(CLI::App &program, Exit &exit);
void addInstallGit(CLI::App &program, Exit &exit);
void addKept(CLI::App &program, Exit &exit);
void addMerge(CLI::App &program, Exit &exit);
void addPasswd(CLI::App &program, Exit &exit);
void addPatch(CLI::App &program, Exit &exit);
void addRemove(CLI::App &program, Exit &exit);
void addRename(CLI::App &program, Exit &exit);
void addResize(CLI::App &program, Exit &exit);
void addRun(CLI::App &program, Exit &exit);
void addSet(CLI::App &program, Exit &exit);
void addSort(CLI::App &program, Exit &exit);
void addTables(CLI::App &program, Exit &exit);
void addVerify(CLI::App &program, Exit &exit);

/// Writes completions and manual pages, made of what the commands say of themselves, under a folder as they stand under
/// share/ of an installation. Throws FileError.
void writeShareFolder(const CLI::App &program, const QString &folder, const QString &version);

// git stops where one of its drivers fails, so that their calls are looked at before anything in them can be refused.

/// A driver for differences goes before the tool that the user has asked for with `git difftool`: where this is such a
/// call starts that tool instead, and does not come back.
void leaveToDifftool(int argc, const char *const *argv);
/// Where this is the call of a driver tells in its output why nothing can be shown; false for any other call.
bool tellGit(int argc, const char *const *argv, const QString &reason);

/// An argument as the program was given it.
inline QString argumentText(const std::string &argument) {
    return argumentText(QByteArrayView(argument.data(), static_cast<qsizetype>(argument.size())));
}

} // namespace qir
