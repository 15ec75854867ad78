#pragma once

#include "base/ArgumentTexts.h"

#include <QString>

#include <CLI/CLI.hpp>

#include <string>

namespace qir {

/// The exit status of the program.
enum class Exit {
    Done = 0,     ///< Done, yes, or the same.
    Negative = 1, ///< A negative answer, or different.
    Trouble = 2,  ///< The command could not be carried out.
};

// Each adds its command to the program; parsing the arguments runs it. What it throws is shown and is Exit::Trouble;
// any other answer than Exit::Done goes into `exit`.

void addCreate(CLI::App &program, Exit &exit);
void addDiff(CLI::App &program, Exit &exit);
void addDump(CLI::App &program, Exit &exit);
void addExport(CLI::App &program, Exit &exit);
void addImport(CLI::App &program, Exit &exit);
void addInfo(CLI::App &program, Exit &exit);
void addPasswd(CLI::App &program, Exit &exit);
void addPatch(CLI::App &program, Exit &exit);
void addTables(CLI::App &program, Exit &exit);
void addVerify(CLI::App &program, Exit &exit);

/// An argument as the program was given it.
inline QString argumentText(const std::string &argument) {
    return argumentText(QByteArrayView(argument.data(), static_cast<qsizetype>(argument.size())));
}

/// The option by which a command writes CSV files for spreadsheets that compute what begins like a formula.
inline void addEscapeFormulas(CLI::App &command, bool &escape) {
    command.add_flag("--escape-formulas", escape,
                     "CSV only: put an apostrophe before texts that a spreadsheet would compute (=, +, -, @ in front)");
}

/// The option by which a command takes the password of its file.
inline void addPasswordFile(CLI::App &command, std::string &file) {
    command.add_option("--password-file", file, "Read the password from the first line of this file")
        ->type_name("FILE");
}

} // namespace qir
