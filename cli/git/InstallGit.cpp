#include "cli/Commands.h"
#include "cli/FileError.h"
#include "cli/Protection.h"
#include "cli/WholeFile.h"
#include "cli/tables/TextTable.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <array>
#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

QByteArray git(const QStringList &arguments) {
    QProcess process;
    process.start(u"git"_s, arguments);
    if (!process.waitForStarted(-1))
        throw std::runtime_error("git cannot be started: is it installed?");
    process.closeWriteChannel();
    process.waitForFinished(-1);
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        const QString reason = QString::fromUtf8(process.readAllStandardError()).trimmed();
        throw std::runtime_error(u"git %1: %2"_s.arg(arguments.value(0), reason).toStdString());
    }
    return process.readAllStandardOutput();
}

QString quoted(const QString &word) {
    return u'\'' + QString(word).replace(u'\'', u"'\\''"_s) + u'\'';
}

/// How git's shell reaches this program.
QString programWord() {
    const QString own = QFileInfo(QCoreApplication::applicationFilePath()).canonicalFilePath();
    const QString found = QStandardPaths::findExecutable(u"qirdb"_s);
    return !found.isEmpty() && QFileInfo(found).canonicalFilePath() == own ? u"qirdb"_s : quoted(own);
}

/// The same of the editor: the one beside this program where that is not the one that is found by its name.
QString editorWord() {
    const QString name = u"qir-editor"_s;
    const QFileInfo beside(QFileInfo(QCoreApplication::applicationFilePath()).canonicalPath() + u'/' + name);
    const QString found = QStandardPaths::findExecutable(name);
    return !beside.isExecutable() || QFileInfo(found) == beside ? name : quoted(beside.filePath());
}

void writeDrivers(const QString &scope) {
    const QString program = programWord();
    const auto set = [&](const QString &name, const QString &value) { git({u"config"_s, scope, name, value}); };
    set(u"diff.qirdb.textconv"_s, program + u" dump --textconv --"_s);
    set(u"diff.qirdb.command"_s, program + u" diff --git --"_s);
    set(u"merge.qirdb.name"_s, u"tables of a database, cell by cell"_s);
    set(u"merge.qirdb.driver"_s, program + u" merge %O %A %B -o %A --path %P"_s);
    set(u"difftool.qirdb.cmd"_s, program + u" diff -- \"$LOCAL\" \"$REMOTE\""_s);
    set(u"difftool.qir-editor.cmd"_s, editorWord() + u" --left=\"$LOCAL\" --right=\"$REMOTE\""_s);
}

/// A pattern of git's that takes an extension whatever its case.
QString patternOf(const QString &extension) {
    QString pattern = u"*."_s;
    for (const QChar letter : extension)
        pattern += letter.isLetter() ? u"[%1%2]"_s.arg(letter.toLower()).arg(letter.toUpper()) : QString(letter);
    return pattern;
}

/// Adds to a file of attributes what is not there yet; gives whether anything was.
bool writeAttributes(const QString &file) {
    QByteArray text = QFileInfo::exists(file) ? readWholeFile(file) : QByteArray();
    const QByteArrayList lines = text.split('\n');
    if (!text.isEmpty() && !text.endsWith('\n'))
        text += '\n';
    bool isChanged = false;
    for (const QString &extension : databaseExtensions()) {
        const QByteArray line = (patternOf(extension) + u" diff=qirdb merge=qirdb"_s).toUtf8();
        if (lines.contains(line))
            continue;
        text += line + '\n';
        isChanged = true;
    }
    if (isChanged) {
        QDir().mkpath(QFileInfo(file).absolutePath()); // where that fails the write says why
        writeWholeFile(file, text);
    }
    return isChanged;
}

QString globalAttributes() {
    QProcess process;
    process.start(u"git"_s, {u"config"_s, u"--global"_s, u"--type=path"_s, u"core.attributesFile"_s});
    process.waitForFinished(-1);
    QString chosen = QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    if (!chosen.isEmpty())
        return chosen;
    const QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
    return (config.isEmpty() ? QDir::homePath() + u"/.config"_s : config) + u"/git/attributes"_s;
}

void install(bool isGlobal) {
    const QString top =
        isGlobal ? QString() : QString::fromUtf8(git({u"rev-parse"_s, u"--show-toplevel"_s})).chopped(1);
    const QString attributes = isGlobal ? globalAttributes() : top + u"/.gitattributes"_s;
    writeDrivers(isGlobal ? u"--global"_s : u"--local"_s);
    const bool isChanged = writeAttributes(attributes);
    print(printableText(u"%1: %2"_s.arg(attributes, isChanged ? u"written"_s : u"has the attributes already"_s))
              .toUtf8() +
          '\n');
}

} // namespace

void addInstallGit(CLI::App &program, Exit &) {
    auto isGlobal = std::make_shared<bool>(false);
    Subcommand(program, "install-git", "Make git show and merge databases by their tables, in this repository")
        .flag("--global", *isGlobal, "In all repositories of this user")
        .note("Writes the drivers into git's configuration (diff, merge, difftool; all named qirdb, and a difftool "
              "qir-editor, the window) and the file names that they are for into .gitattributes at the top of the "
              "repository, which is to be committed.")
        .run([isGlobal] { install(*isGlobal); });
}

} // namespace qir
