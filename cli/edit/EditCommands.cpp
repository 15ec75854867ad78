#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/edit/Edit.h"

#include <deque>
#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// The words of a command line, in their order; the file stands among them where the command has it.
struct Arguments {
    std::string file;
    std::deque<std::string> words; // their places stay
    std::vector<std::string> more;
    std::string passwordFile;
    std::vector<std::string> passwordFiles; ///< Of a copy, which has two files.
    bool json = false;

    QStringList edit(const QString &verb) const {
        QStringList edit{verb};
        for (const std::string &word : words)
            edit += argumentText(word);
        for (const std::string &word : more)
            edit += argumentText(word);
        return edit;
    }
};

const QirDatabase &noOtherDatabase(const QString &) {
    throw std::logic_error("only a copy opens another database");
}

void change(const Arguments &arguments, const QStringList &words) {
    QByteArray out;
    Session session = Session::openToChange(argumentText(arguments.file), arguments.passwordFile);
    session.run([&] {
        applyEdit({session.database(), noOtherDatabase, out, arguments.json}, words);
        session.saveChanges();
    });
}

void get(const Arguments &arguments) {
    QByteArray out;
    const Session session = Session::open(argumentText(arguments.file), arguments.passwordFile);
    session.run([&] {
        applyEdit({session.database(), noOtherDatabase, out, arguments.json}, arguments.edit(u"get"_s));
    });
    print(out);
}

/// A command that changes its file, which is its first argument.
class Change {
public:
    Change(CLI::App &program, const std::string &name, const std::string &description)
        : m_verb(QString::fromStdString(name))
        , m_command(program, name, description) {
        m_command.argument("FILE", m_arguments->file, "The database");
    }
    Change &word(const std::string &name, const std::string &description) {
        m_command.argument(name, m_arguments->words.emplace_back(), description);
        return *this;
    }
    /// The word that says what is added, removed or renamed.
    Change &what(const std::vector<std::string> &kinds) {
        m_command.choice("WHAT", m_arguments->words.emplace_back(), kinds, "What it is");
        return *this;
    }
    Change &more(const std::string &name, const std::string &description) {
        m_command.arguments(name, m_arguments->more, 0, description);
        return *this;
    }
    void finish() {
        m_command.passwordFile(m_arguments->passwordFile).run([arguments = m_arguments, verb = m_verb] {
            change(*arguments, arguments->edit(verb));
        });
    }

private:
    QString m_verb;
    std::shared_ptr<Arguments> m_arguments = std::make_shared<Arguments>();
    Subcommand m_command;
};

void copy(const Arguments &arguments) {
    QByteArray out;
    const Session from =
        Session::open(argumentText(arguments.words.front()), passwordFileOf(arguments.passwordFiles, 0));
    Session session = Session::openToChange(argumentText(arguments.file), passwordFileOf(arguments.passwordFiles, 1));
    session.run([&] {
        const auto open = [&](const QString &) -> const QirDatabase & { return from.database(); };
        applyEdit({session.database(), open, out}, arguments.edit(u"copy"_s));
        session.saveChanges();
    });
}

constexpr char recordHelp[] = "The record: its number, or FIELD=VALUE that one record has";
constexpr char fieldHelp[] = "The field: its name or its number";

} // namespace

void addGet(CLI::App &program, Exit &) {
    auto arguments = std::make_shared<Arguments>();
    Subcommand(program, "get", "Print the value of a cell")
        .argument("FILE", arguments->file, "The database")
        .argument("TABLE", arguments->words.emplace_back(), "The table")
        .argument("RECORD", arguments->words.emplace_back(), recordHelp)
        .argument("FIELD", arguments->words.emplace_back(), fieldHelp)
        .readingOptions(arguments->json)
        .passwordFile(arguments->passwordFile)
        .run([arguments] { get(*arguments); });
}

void addSet(CLI::App &program, Exit &) {
    Change(program, "set", "Give a cell a value")
        .word("TABLE", "The table")
        .word("RECORD", recordHelp)
        .word("FIELD", fieldHelp)
        .word("VALUE", "The value, which the field must hold as it is; -- before one that begins with a dash")
        .finish();
}

void addAdd(CLI::App &program, Exit &) {
    Change(program, "add", "Add a table, a field or a record")
        .what({"table", "field", "record"})
        .word("TABLE", "The table: the new one, or that of the field or record")
        .more("NEW", "Of a field its name and type, NAME[type:size]; of a record FIELD=VALUE, any number of them")
        .finish();
}

void addRemove(CLI::App &program, Exit &) {
    Change(program, "remove", "Remove a table, a field or a record")
        .what({"table", "field", "record"})
        .word("TABLE", "The table: the one that goes, or that of the field or record")
        .more("WHICH", "The field, or the record: its number, or FIELD=VALUE that one record has")
        .finish();
}

void addRename(CLI::App &program, Exit &) {
    Change(program, "rename", "Rename a table or a field")
        .what({"table", "field"})
        .word("TABLE", "The table")
        .more("NAMES", "The new name of the table, or the field and its new name")
        .finish();
}

void addResize(CLI::App &program, Exit &) {
    Change(program, "resize", "Change the size of a text field; longer texts are cut")
        .word("TABLE", "The table")
        .word("FIELD", fieldHelp)
        .word("SIZE", "The characters that it holds, 0 to 65535")
        .finish();
}

void addSort(CLI::App &program, Exit &) {
    Change(program, "sort", "Put the records of a table into the ascending order of a field")
        .word("TABLE", "The table")
        .word("FIELD", fieldHelp)
        .finish();
}

void addCopy(CLI::App &program, Exit &) {
    auto arguments = std::make_shared<Arguments>();
    Subcommand(program, "copy", "Copy a table, into another database or into the same one")
        .argument("SOURCE", arguments->words.emplace_back(), "The database that has the table")
        .argument("TABLE", arguments->words.emplace_back(), "The table")
        .argument("TARGET", arguments->file, "The database that gets it")
        .arguments("NAME", arguments->more, 0, "Its name there, where that is another one")
        .passwordFiles(arguments->passwordFiles, "first SOURCE's, then TARGET's")
        .run([arguments] { copy(*arguments); });
}

} // namespace qir
