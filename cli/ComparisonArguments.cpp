#include "cli/ComparisonArguments.h"

#include "cli/Commands.h"
#include "cli/FileError.h"
#include "cli/WholeFile.h"

#include <QStringDecoder>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// Options that may be given again and again.
CLI::Option *addRepeated(CLI::App &command, const std::string &name, std::vector<std::string> &values,
                         const std::string &what, const std::string &type) {
    return command.add_option(name, values, what)
        ->type_name(type)
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

ChosenKey keyOf(const QString &text) {
    const auto key = parseKey(text);
    if (!key)
        throw WrongChoice(key.error().text);
    return *key;
}

/// A key in each line; empty lines and those that begin with "#" are none.
void readKeyFile(const QString &file, std::vector<ChosenKey> &keys) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(readWholeFile(file));
    if (decoder.hasError())
        throw FileError(file, u"it is not UTF-8"_s);
    for (const QString &line : text.split(u'\n')) {
        const QString trimmed = line.trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith(u'#'))
            continue;
        const auto key = parseKey(trimmed);
        if (!key)
            throw FileError(file, key.error().text);
        if (key->table.isEmpty())
            throw FileError(file, u"a line is TABLE:FIELD,..: %1"_s.arg(trimmed));
        keys.push_back(*key);
    }
}

} // namespace

Result<ChosenKey> parseKey(const QString &text) {
    ChosenKey key;
    QString name;
    bool hasTable = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar character = text[i];
        if (character == u'\\' && i + 1 < text.size() && u":,\\"_s.contains(text[i + 1])) {
            name += text[++i];
        } else if (character == u':' && !hasTable && key.fields.isEmpty()) {
            hasTable = true;
            key.table = name;
            name.clear();
        } else if (character == u',') {
            key.fields += name;
            name.clear();
        } else {
            name += character;
        }
    }
    key.fields += name;
    const auto isNothing = [](const QString &part) { return part.trimmed().isEmpty(); };
    if ((hasTable && isNothing(key.table)) || std::any_of(key.fields.begin(), key.fields.end(), isNothing))
        return failure(u"a key is [TABLE:]FIELD[,FIELD..]: %1"_s.arg(text));
    return key;
}

void ComparisonArguments::addKeys(CLI::App &command) {
    addRepeated(command, "--key", m_keys,
                "Compare records that have the same values in these fields, wherever they stand; without TABLE in "
                "every table that has the fields",
                "[TABLE:]FIELD[,FIELD..]");
    addRepeated(command, "--key-file", m_keyFiles, "Read keys from a file, TABLE:FIELD,.. in each line", "FILE");
}

void ComparisonArguments::addTolerance(CLI::App &command) {
    addRepeated(command, "--ignore", m_ignore, "A field that is not compared", "FIELD");
    command.add_flag("--ignore-case", m_ignoreCase, "Texts that differ in case only are the same");
    command.add_flag("--ignore-blanks", m_ignoreBlanks, "Texts that differ in white space only are the same");
    command.add_option("--tolerance", m_tolerance, "Numbers up to so far apart are the same")
        ->type_name("X")
        ->check(CLI::NonNegativeNumber);
}

void ComparisonArguments::addTables(CLI::App &command) {
    addRepeated(command, "--table", m_tables, "Only this table; may be repeated", "NAME");
}

ComparisonChoice ComparisonArguments::choice() const {
    ComparisonChoice choice;
    for (const std::string &file : m_keyFiles)
        readKeyFile(argumentText(file), choice.keys);
    for (const std::string &key : m_keys)
        choice.keys.push_back(keyOf(argumentText(key)));
    for (const std::string &field : m_ignore)
        choice.ignore += argumentText(field);
    for (const std::string &table : m_tables)
        choice.tables += argumentText(table);
    choice.tolerance = {m_tolerance, m_ignoreCase, m_ignoreBlanks};
    return choice;
}

} // namespace qir
