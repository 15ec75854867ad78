#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace qir {

/// An argument or option of a command, as the command line knows it.
struct CommandWord {
    QString name; ///< "FILE", "--format".
    QString description;
    QString value;       ///< What an option takes, "" for a flag; of an argument "".
    QStringList choices; ///< What it may be, where it is one of a few words.
    bool isRequired = false;
    bool isRepeated = false;

    bool isOption() const { return name.startsWith(u'-'); }
};

/// A command, or the program itself.
struct CommandPage {
    QString name;
    QString description;
    QString note;
    std::vector<CommandWord> words; ///< Arguments in their order, then options.

    std::vector<CommandWord> arguments() const;
    std::vector<CommandWord> options() const;
    /// "qirdb dump [OPTIONS] FILE [TABLE]".
    QString synopsis() const;
};

/// The program's commands, in the order in which its help shows them.
std::vector<CommandPage> commandPages(const CLI::App &program);
/// What the program says of itself.
CommandPage programPage(const CLI::App &program);

} // namespace qir
