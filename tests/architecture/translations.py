#!/usr/bin/env python3
"""Every text of the window has its translation in each file of translations/, with the same places to fill in, a
shortcut letter where the English text has one, and its dots.

  translations.py ROOT            status 1 and a line for each text that is not in order; 77 without lupdate
  translations.py ROOT --update   first brings the files in step with the sources (tools/translate does this)
  translations.py --self-test     shows that a text without a translation, and a bad one, are found
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

FOLDERS = ["app", "base", "compare", "db", "dialogs", "find", "pane", "platform", "structure", "view"]
NOT_RUN = 77


def lupdate():
    here = "/usr/lib/qt6/bin/lupdate"  # where Debian keeps it apart from that of Qt 5
    return here if os.path.exists(here) else shutil.which("lupdate")


def update(root, files):
    """Brings .ts files in step with the sources; gives what lupdate complained of."""
    folders = [folder for folder in FOLDERS if os.path.isdir(os.path.join(root, folder))]
    result = subprocess.run([lupdate(), "-silent", "-I", ".", "-no-obsolete", "-locations", "none", *folders,
                             "-ts", *files], cwd=root, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                            check=False)
    if result.returncode != 0:
        return [result.stdout.strip()]
    # Such a text would be looked for under another name than it is kept by.
    return [line for line in result.stdout.splitlines() if "lacks Q_OBJECT" in line]


def text_of(element):
    """The text of an element; a character that XML cannot hold stands in an element of its own."""
    if element is None:
        return ""
    text = element.text or ""
    for part in element:
        value = part.get("value", "")
        text += chr(int(value[1:], 16) if value.startswith("x") else int(value or 0)) + (part.tail or "")
    return text


def places(text):
    return sorted(re.findall(r"%\d+|%n", text))


def has_letter(text):
    return re.search(r"&\w", text) is not None


def faults(source, translation):
    if places(source) != places(translation):
        yield "other places to fill in"
    if has_letter(source) != has_letter(translation):
        yield "a shortcut letter in one of them only"
    if source.endswith("...") != translation.endswith("..."):
        yield "dots at the end of one of them only"
    if source[:1].isspace() != translation[:1].isspace() or source[-1:].isspace() != translation[-1:].isspace():
        yield "blanks at the end of one of them only"


def problems(path):
    name = os.path.basename(path)
    for context in ElementTree.parse(path).getroot().findall("context"):
        for message in context.findall("message"):
            source, translation = text_of(message.find("source")), message.find("translation")
            if translation.get("type") == "unfinished" or not text_of(translation):
                yield f"{name}: {context.findtext('name')}: {source!r} is not translated"
                continue
            for fault in faults(source, text_of(translation)):
                yield f"{name}: {context.findtext('name')}: {source!r} and {text_of(translation)!r}: {fault}"


def files_of(folder):
    return sorted(os.path.join(folder, name) for name in os.listdir(folder) if name.endswith(".ts"))


def check(root):
    """What the sources have now, on copies of the files."""
    with tempfile.TemporaryDirectory() as folder:
        for path in files_of(os.path.join(root, "translations")):
            shutil.copy(path, folder)
        copies = files_of(folder)
        found = update(root, copies)
        return found + [problem for path in copies for problem in problems(path)]


def self_test():
    with tempfile.TemporaryDirectory() as root:
        os.makedirs(os.path.join(root, "app"))
        os.makedirs(os.path.join(root, "translations"))
        source = os.path.join(root, "app", "a.cpp")
        with open(source, "w", encoding="utf-8") as file:
            file.write('#include <QObject>\nQString a() { return QObject::tr("&Open %1..."); }\n')
        texts = os.path.join(root, "translations", "qir-editor_it.ts")
        update(root, [texts])
        assert any("is not translated" in problem for problem in check(root)), "a planted text was not found"

        def translate(text):
            with open(texts, encoding="utf-8") as file:
                content = file.read()
            content = re.sub(r"<translation.*</translation>|<translation[^>]*/>", f"<translation>{text}</translation>",
                             content)
            with open(texts, "w", encoding="utf-8") as file:
                file.write(content)

        translate("&amp;Apri %1...")
        assert check(root) == [], check(root)
        for bad in ("&amp;Apri...", "Apri %1...", "&amp;Apri %1"):
            translate(bad)
            assert len(check(root)) == 1, bad
        translate("&amp;Apri %1...")
        with open(source, "a", encoding="utf-8") as file:
            file.write('QString b() { return QObject::tr("New"); }\n')
        assert any("'New' is not translated" in problem for problem in check(root)), "a later text was not found"


def main(arguments):
    if lupdate() is None:
        print("not run: lupdate is missing (qt6-l10n-tools)")
        return NOT_RUN
    if arguments == ["--self-test"]:
        self_test()
        return 0
    root = arguments[0]
    if arguments[1:] == ["--update"]:
        update(root, files_of(os.path.join(root, "translations")))
    found = check(root)
    print("\n".join(found) if found else "every text is translated")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
