#!/usr/bin/env python3
"""Every text that a person reads in the window goes through tr(), so that it can be translated; and literals are
written one way: u"..."_s in .cpp files, QStringLiteral in headers, which must not import a namespace.

  texts.py ROOT    status 1 and a line for each literal that does neither stand in tr() nor where no person reads it
  texts.py --self-test
"""
import os
import re
import sys

import sources

# The command-line companion speaks one language, and so do the errors of the floors that it shares with the editor.
COMPANIONS = {"base", "cli", "db", "qirtbase"}
# The folders that it shares with the editor, the page of a report included.
SHARED = ["compare/conflicts", "compare/engine", "compare/report", "platform/automation"]

# What stands before a literal that no person reads.
NOT_SHOWN = re.compile(
    r"(?:QStringList keys\{[^}]*|QSettings\(QSettings::UserScope, |setObjectName\(|add(?:Button|Text|Box)\(\*\w+, (?:\d, ){0,2}|findChild<[^>]*>\(|\bname\(\*?[\w.>-]+, |RichiamaTabella\(\w+, |\.method\([^\"]*|QFile \w+\(|"
    r"startsWith\(|option == |isSet\(|m_picture\(|m_left\(|m_right\(|m_language\(|m_compare\(|addFile\(|constexpr auto \w+ = |names\{[^}]*|\{Command::\w+, |addPositionalArgument\(|setStyleSheet\(|qEnvironmentVariable\w*\(|"
    r"html (?:\+?=) ?(?:[^;]*\+ )?|\.replace\([^;]*|static_assert\([^\"]*|Q_ASSERT_X\([^\"]*|"
    r"allowedIn\w+ = |[fF]ormat = |magic = |plugin\w* = )(?:u|QLatin1StringView\()?$", re.S)
# Literals that are data, not words.
DATA = {
    "/bus", "/dev/null", ".conflicts.json", "/proc/self/mounts", # names of files, and what they end with
    "DDB", "html", "|*.html;*.htm",                 # extensions of file names
    "differences.html",                             # a file's name
    "OUT.png", "[FILE]", "FILE", "CODE",                          # names of arguments, as every program has them
    "Fieldx", "Tablex",                             # names of a new field and table, which the file will hold
    "qir-editor: %s\\n", "qir-editor: %s\\n%s\\n",  # the program's name before a text
    "qir-editor: %s %s\\n",
}
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
IN_TR = re.compile(r'\b(?:tr|translate)\(\s*(?:"(?:[^"\\]|\\.)*"[\s,]*)*$')
COMMENT = re.compile(r'("(?:[^"\\\n]|\\.)*")|//[^\n]*|#include[^\n]*')


def untranslated(text):
    """(line, literal) of each text that is not in tr()."""
    text = COMMENT.sub(lambda token: token.group(1) or "", text)
    found = []
    for match in LITERAL.finditer(text):
        words, before = match.group(1), text[:match.start()]
        if len(re.findall(r"[A-Za-z]", re.sub(r"\\[a-z]", "", words))) < 2 or words in DATA:
            continue
        before = before[-400:]
        statement = re.split(r"[;{}]\s*\n", before)[-1]
        if not IN_TR.search(before) and not NOT_SHOWN.search(statement):
            found.append((text[:match.start()].count("\n") + 1, words))
    return found


def other_dialect(path, text):
    """Lines that write a literal the other way."""
    if not path.endswith(".cpp"):
        return []
    return [number for number, line in enumerate(text.splitlines(), 1)
            if re.search(r"QStringLiteral\(\"|QLatin1String\(\"", line)]


def read(root, folders):
    for path in sources.all_files(root, folders):
        with open(path, encoding="utf-8") as file:
            yield os.path.relpath(path, root), file.read()


def self_test():
    assert untranslated('messageBox(window, u"No table"_s);\n') == [(1, "No table")]
    assert untranslated('messageBox(window, tr("No table"));\n') == []
    assert untranslated('text = tr("No table "\n          "here");\n') == []
    assert untranslated('list.setObjectName(u"hint_%1"_s);\n') == []
    assert untranslated('// says "No table"\nmessageBox(window, u"!"_s);\n') == []
    assert untranslated('messageBox(window, u"http://x No table"_s);\n') == [(1, "http://x No table")]
    assert untranslated('throw std::runtime_error("broken");\n') == [(1, "broken")]
    assert other_dialect("a.cpp", 'f(QStringLiteral("x"));\n') == [1]
    assert other_dialect("a.h", 'f(QStringLiteral("x"));\n') == []


def main(root):
    offences = [f'{path}:{line}: "{words}" is shown and not in tr()'
                for path, text in read(root, [f for f in sources.program_folders(root) if f not in COMPANIONS])
                if os.path.dirname(path) not in SHARED
                for line, words in untranslated(text)]
    offences += [f'{path}:{line}: write u"..."_s' for path, text in read(root, sources.folders(root))
                 for line in other_dialect(path, text)]
    print("\n".join(offences) if offences else "every text can be translated")
    return 1 if offences else 0


if __name__ == "__main__":
    self_test()
    sys.exit(0 if sys.argv[1:] == ["--self-test"] else main(sys.argv[1]))
