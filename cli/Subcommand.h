#pragma once

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace qir {

/// The exit status of the program.
enum class Exit {
    Done = 0,     ///< Done, yes, or the same.
    Negative = 1, ///< A negative answer, or different.
    Trouble = 2,  ///< The command could not be carried out.
};

/// One command of the program and what it takes. Help, completions and manual pages are made of what is said here. The
/// values that it is given outlive it; arguments come in the order in which they are added.
class Subcommand {
public:
    Subcommand(CLI::App &program, const std::string &name, const std::string &description);

    /// An argument that must be there.
    Subcommand &argument(const std::string &name, std::string &value, const std::string &description);
    /// One that may be left out.
    Subcommand &optional(const std::string &name, std::string &value, const std::string &description);
    /// One of a few words.
    Subcommand &choice(const std::string &name, std::string &value, const std::vector<std::string> &words,
                       const std::string &description);
    /// Any number of arguments, at least so many.
    Subcommand &arguments(const std::string &name, std::vector<std::string> &values, int least,
                          const std::string &description);

    Subcommand &flag(const std::string &name, bool &value, const std::string &description);
    /// An option with a value, `type` tells what.
    Subcommand &option(const std::string &name, std::string &value, const std::string &type,
                       const std::string &description);
    /// One that must be there.
    Subcommand &requiredOption(const std::string &name, std::string &value, const std::string &type,
                               const std::string &description);
    /// One that may be repeated, with a value each time; the words after that are the command's arguments.
    Subcommand &options(const std::string &name, std::vector<std::string> &values, const std::string &type,
                        const std::string &description);
    /// One that takes all words up to the next option.
    Subcommand &lists(const std::string &name, std::vector<std::string> &values, const std::string &type,
                      const std::string &description);

    /// The password of the command's one file.
    Subcommand &passwordFile(std::string &file);
    /// The passwords of several files; `order` says of which.
    Subcommand &passwordFiles(std::vector<std::string> &files, const std::string &order);
    /// CSV files for spreadsheets that compute what begins like a formula.
    Subcommand &escapeFormulas(bool &escape);
    /// What a command that reads prints, and whether it prints at all.
    Subcommand &readingOptions(bool &json);
    Subcommand &quiet();

    /// Only one of these, which were added before, may be given.
    Subcommand &exclusive(const std::vector<std::string> &names);

    /// More about the command, for its help.
    Subcommand &note(const std::string &text);

    /// What it does, once its arguments are read.
    void run(std::function<void()> work);
    void run(Exit &exit, std::function<Exit()> work);

private:
    CLI::App *m_app;
};

/// The arguments of a program as CLI11 takes them, the last one first, so that a Subcommand gets every word as it is.
std::vector<std::string> markedWords(int count, const char *const *arguments);

/// Which of several password files is that of the file number `index`: the last one counts for all that follow.
std::string passwordFileOf(const std::vector<std::string> &files, std::size_t index);

} // namespace qir
