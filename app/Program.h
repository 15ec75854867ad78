#pragma once

#include <QString>
#include <QStringList>

namespace qir {

/// What the program was started with.
struct ProgramArguments {
    QStringList words;    ///< Everything that is no option: together one file name.
    QString picture;      ///< Where to write a picture of the window; "" for an editor that people use.
    QString left = {};    ///< The file for the left pane, where an option names it; "" for none.
    QString right = {};   ///< The same for the right pane.
    bool compare = false; ///< Two panes are to be compared: each file that is not named is asked for.

    /// The file for the left pane, named in either way.
    QString fileName() const { return left.isEmpty() ? words.join(u' ') : left; }
};

/// Says why the arguments cannot be taken, on the standard error output and in a box, since a file manager shows no
/// output. Gives the exit status, 2.
int refuseArguments(const QString &reason);

/// Runs the editor on the application object that exists, until its window is closed. Gives the exit status: 0, or 1
/// when the database named could not be loaded; 2 when the picture could not be written, or was to show two files.
int runProgram(const ProgramArguments &arguments);

} // namespace qir
