#include "cli/help/Completions.h"

using namespace Qt::StringLiterals;

namespace qir {

namespace {

QString quoted(const QString &text) {
    return u'\'' + QString(text).replace(u'\'', u"'\\''"_s) + u'\'';
}

/// As it stands inside the brackets that zsh reads an option from.
QString zshText(const QString &text) {
    QString escaped;
    for (const QChar unit : text) {
        if (u"[]:\\"_s.contains(unit))
            escaped += u'\\';
        escaped += unit;
    }
    return escaped;
}

QStringList namesOf(const std::vector<CommandWord> &words) {
    QStringList names;
    for (const CommandWord &word : words)
        names += word.name;
    return names;
}

QString bashCase(const CommandPage &command) {
    QString lines;
    for (const CommandWord &option : command.options()) {
        if (!option.choices.isEmpty())
            lines += u"    %1:%2:*) words=%3 ;;\n"_s.arg(command.name, option.name, quoted(option.choices.join(u' ')));
        else if (!option.value.isEmpty())
            lines += u"    %1:%2:*) words= ;;\n"_s.arg(command.name, option.name);
    }
    lines += u"    %1:*:-*) words=%2 ;;\n"_s.arg(command.name, quoted(namesOf(command.options()).join(u' ')));
    return lines;
}

/// The arguments that are one of a few words, by their place.
QString bashPlaces(const CommandPage &command) {
    QString lines;
    int place = 0;
    for (const CommandWord &argument : command.arguments()) {
        ++place;
        if (!argument.choices.isEmpty())
            lines +=
                u"    %1:%2) words=%3 ;;\n"_s.arg(command.name).arg(place).arg(quoted(argument.choices.join(u' ')));
    }
    return lines;
}

QString zshSpecification(const CommandWord &option) {
    QString text = (option.isRepeated ? u"*"_s : QString()) + option.name + u'[' + zshText(option.description) + u']';
    if (!option.choices.isEmpty())
        text += u": :("_s + option.choices.join(u' ') + u')';
    else if (!option.value.isEmpty())
        text += u": :_files"_s;
    return text;
}

} // namespace

QByteArray bashCompletion(const CommandPage &program, const std::vector<CommandPage> &commands) {
    QStringList names;
    QString cases;
    QString places;
    for (const CommandPage &command : commands) {
        names += command.name;
        cases += bashCase(command);
        places += bashPlaces(command);
    }
    const QString text =
        u"# bash completion of qirdb\n"
        "_qirdb() {\n"
        "  local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} words= place=0 i\n"
        "  COMPREPLY=()\n"
        "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
        "    COMPREPLY=($(compgen -W %1 -- \"$current\"))\n"
        "    return\n"
        "  fi\n"
        "  for ((i = 2; i <= COMP_CWORD; ++i)); do\n"
        "    case ${COMP_WORDS[i]} in -?*) ;; *) place=$((place + 1)) ;; esac\n"
        "  done\n"
        "  case ${COMP_WORDS[1]}:$place in\n%2    *) ;;\n"
        "  esac\n"
        "  case ${COMP_WORDS[1]}:$before:$current in\n%3"
        "  esac\n"
        "  [ -z \"$words\" ] || COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n"
        "}\n"
        "complete -o default -o bashdefault -F _qirdb qirdb\n"_s;
    return text.arg(quoted((names + namesOf(program.options())).join(u' ')), places, cases).toUtf8();
}

QByteArray zshCompletion(const CommandPage &program, const std::vector<CommandPage> &commands) {
    QString described;
    QString cases;
    for (const CommandPage &command : commands) {
        described += u"    %1\n"_s.arg(quoted(command.name + u':' + command.description));
        cases += u"    %1)\n      _arguments"_s.arg(command.name);
        for (const CommandWord &option : command.options())
            cases += u" \\\n        "_s + quoted(zshSpecification(option));
        for (const CommandWord &argument : command.arguments()) {
            const QString action = argument.choices.isEmpty() ? u"_files"_s : u'(' + argument.choices.join(u' ') + u')';
            const QString times = argument.isRepeated ? u"*:"_s : argument.isRequired ? u":"_s : u"::"_s;
            cases += u" \\\n        "_s + quoted(times + zshText(argument.name) + u':' + action);
        }
        cases += u"\n      ;;\n"_s;
    }
    QString options;
    for (const CommandWord &option : program.options())
        options += u' ' + quoted(zshSpecification(option));
    return u"#compdef qirdb\n"
           "_qirdb() {\n"
           "  local -a commands\n"
           "  commands=(\n%1  )\n"
           "  if (( CURRENT == 2 )); then\n"
           "    _describe command commands\n"
           "    _arguments%3\n"
           "    return\n"
           "  fi\n"
           "  local command=$words[2]\n"
           "  shift words\n"
           "  (( CURRENT-- ))\n"
           "  case $command in\n%2"
           "  esac\n"
           "}\n"
           "_qirdb \"$@\"\n"_s.arg(described, cases, options)
               .toUtf8();
}

QByteArray fishCompletion(const CommandPage &program, const std::vector<CommandPage> &commands) {
    QString lines = u"# fish completion of qirdb\n"_s;
    const auto addOption = [&](const QString &condition, const CommandWord &option) {
        lines += u"complete -c qirdb -n %1 -l %2 -d %3"_s.arg(quoted(condition), option.name.sliced(2),
                                                              quoted(option.description));
        if (!option.choices.isEmpty())
            lines += u" -x -a "_s + quoted(option.choices.join(u' '));
        else if (!option.value.isEmpty())
            lines += u" -r -F"_s;
        lines += u'\n';
    };
    for (const CommandWord &option : program.options())
        addOption(u"__fish_use_subcommand"_s, option);
    for (const CommandPage &command : commands) {
        lines += u"complete -c qirdb -n __fish_use_subcommand -f -a %1 -d %2\n"_s.arg(command.name,
                                                                                      quoted(command.description));
        const QString condition = u"__fish_seen_subcommand_from "_s + command.name;
        for (const CommandWord &option : command.options())
            addOption(condition, option);
        for (const CommandWord &argument : command.arguments())
            if (!argument.choices.isEmpty())
                lines +=
                    u"complete -c qirdb -n %1 -a %2\n"_s.arg(quoted(condition), quoted(argument.choices.join(u' ')));
    }
    return lines.toUtf8();
}

} // namespace qir
