#include "cli/ComparisonArguments.h"

#include "base/LeadingNumber.h"
#include "cli/Commands.h"
#include "cli/FileError.h"
#include "cli/WholeFile.h"

#include <QStringDecoder>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

ChosenKey keyOf(const QString &text) {
    const auto key = parseKey(text);
    if (!key)
        throw WrongChoice(key.error().text);
    return *key;
}

} // namespace

std::vector<ChosenKey> readKeyFile(const QString &file) {
    std::vector<ChosenKey> keys;
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
    return keys;
}

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

void ComparisonArguments::addKeys(Subcommand &command) {
    command
        .options("--key", m_keys, "[TABLE:]FIELD[,FIELD..]",
                 "Records belong together that have the same values in these fields, wherever they stand; without "
                 "TABLE in every table that has the fields")
        .options("--key-file", m_keyFiles, "FILE", "Read keys from a file, TABLE:FIELD,.. in each line");
}

void ComparisonArguments::addTolerance(Subcommand &command) {
    command.options("--ignore", m_ignore, "FIELD", "A field that is not compared")
        .flag("--ignore-case", m_ignoreCase, "Texts that differ in case only are the same")
        .flag("--ignore-blanks", m_ignoreBlanks, "Texts that differ in white space only are the same")
        .option("--tolerance", m_tolerance, "X", "Numbers up to so far apart are the same");
}

void ComparisonArguments::addTables(Subcommand &command) {
    command.options("--table", m_tables, "NAME", "Only this table; may be repeated");
}

ComparisonChoice ComparisonArguments::choice() const {
    ComparisonChoice choice;
    for (const std::string &file : m_keyFiles)
        for (const ChosenKey &key : readKeyFile(argumentText(file)))
            choice.keys.push_back(key);
    for (const std::string &key : m_keys)
        choice.keys.push_back(keyOf(argumentText(key)));
    for (const std::string &field : m_ignore)
        choice.ignore += argumentText(field);
    for (const std::string &table : m_tables)
        choice.tables += argumentText(table);
    const std::optional<double> tolerance = m_tolerance.empty() ? 0 : plainNumber(QString::fromStdString(m_tolerance));
    if (!tolerance || *tolerance < 0)
        throw WrongChoice(u"--tolerance takes a number that is not negative"_s);
    choice.tolerance = {*tolerance, m_ignoreCase, m_ignoreBlanks};
    return choice;
}

} // namespace qir
