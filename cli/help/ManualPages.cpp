#include "cli/help/ManualPages.h"

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// A text as man's language takes it: dashes that can be copied, no line that begins as a request.
QString roff(const QString &text) {
    QString escaped = QString(text).replace(u'\\', u"\\e"_s).replace(u'-', u"\\-"_s).replace(u"\n"_s, u"\n.br\n"_s);
    if (escaped.startsWith(u'.') || escaped.startsWith(u'\''))
        escaped.prepend(u"\\&"_s);
    return escaped;
}

QString heading(const QString &name, const QString &version) {
    return u".TH \"%1\" 1 \"\" \"qirdb %2\" \"User Commands\"\n"_s.arg(name.toUpper(), version);
}

QString section(const QString &title) {
    return u".SH "_s + title + u'\n';
}

QString item(const CommandWord &word) {
    QString head = u"\\fB"_s + roff(word.name) + u"\\fR"_s;
    if (!word.choices.isEmpty())
        head += word.isOption() ? u" \\fI%1\\fR"_s.arg(roff(word.choices.join(u'|'))) : QString();
    else if (!word.value.isEmpty())
        head += u" \\fI%1\\fR"_s.arg(roff(word.value));
    QString description = word.description;
    if (!word.isOption() && !word.choices.isEmpty())
        description += u": "_s + word.choices.join(u", "_s);
    return u".TP\n"_s + head + u'\n' + roff(description) + u".\n"_s;
}

QString items(const QString &title, const std::vector<CommandWord> &words) {
    QString text;
    for (const CommandWord &word : words)
        text += item(word);
    return text.isEmpty() ? QString() : section(title) + text;
}

const QString exitStatus =
    u".SH EXIT STATUS\n"
    ".TP\n0\nDone, yes, or the same.\n"
    ".TP\n1\nA negative answer, or different.\n"
    ".TP\n2\nTrouble; the reason stands on the standard error output, and no file has changed.\n"_s;

} // namespace

QByteArray commandManual(const CommandPage &command, const QString &version) {
    const QString name = u"qirdb-"_s + command.name;
    QString text = heading(name, version) + section(u"NAME"_s) + roff(name) + u" \\- "_s + roff(command.description) +
                   u'\n' + section(u"SYNOPSIS"_s) + roff(command.synopsis()) + u'\n' +
                   items(u"ARGUMENTS"_s, command.arguments()) + items(u"OPTIONS"_s, command.options());
    if (!command.note.isEmpty())
        text += section(u"NOTES"_s) + roff(command.note) + u'\n';
    return (text + exitStatus + u".SH SEE ALSO\n\\fBqirdb\\fR(1)\n"_s).toUtf8();
}

QByteArray programManual(const CommandPage &program, const std::vector<CommandPage> &commands, const QString &version) {
    QString text = heading(u"qirdb"_s, version) + section(u"NAME"_s) + u"qirdb \\- "_s + roff(program.description) +
                   u'\n' + section(u"SYNOPSIS"_s) + roff(program.synopsis()) + u'\n' + section(u"COMMANDS"_s);
    for (const CommandPage &command : commands)
        text += u".TP\n\\fBqirdb\\-%1\\fR(1)\n%2.\n"_s.arg(roff(command.name), roff(command.description));
    text += items(u"OPTIONS"_s, program.options());
    text += section(u"PASSWORDS"_s) +
            roff(u"A protected file's password is asked for on the terminal, or read with --password-file."_s) + u'\n';
    return (text + exitStatus).toUtf8();
}

} // namespace qir
