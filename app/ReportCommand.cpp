#include "app/ReportCommand.h"

#include "app/desktop/OpenFiles.h"
#include "base/ErrorWords.h"
#include "base/StagedFile.h"
#include "compare/report/HtmlReport.h"
#include "platform/dialogs/FileDialog.h"
#include "platform/loop/Guards.h"
#include "platform/loop/MessageLoop.h"

#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t newFileMode = 0666; // less the umask
constexpr mode_t privateMode = 0600;
constexpr qsizetype portion = 1 << 18;

[[noreturn]] void fail(const QString &file, SystemError error) {
    throw std::runtime_error(QObject::tr("%1: %2").arg(file, systemErrorWords(error)).toStdString());
}

void writeReport(EditorContext &editor, const QString &file, const DatabaseDifference &difference) {
    FileOps &ops = FileOps::system();
    const auto path = ResolvedPath::of(ops, systemPath(file));
    if (!path)
        fail(file, path.error());
    // What the report shows of a database with a password is for its owner alone.
    const bool isPrivate = protectionOfPair(editor) == Protection::Protected;
    auto staged = StagedFile::create(ops, path->folder.descriptor(), isPrivate ? privateMode : newFileMode);
    if (!staged)
        fail(file, staged.error());
    QByteArray out;
    const auto write = [&](qsizetype least) {
        if (out.size() < least)
            return;
        if (const auto written = writeFully(ops, staged->descriptor(), out); !written)
            fail(file, written.error());
        out.resize(0);
    };
    YieldTimer timer;
    appendHtmlReport(out, {editor.NomeFileDtb(0), editor.NomeFileDtb(1)}, difference, editor.OggettoDtb(0),
                     editor.OggettoDtb(1), false, [&](QByteArray &) {
                         write(portion);
                         timer.yieldIfDue();
                     });
    write(1);
    SystemResult<void> done = ops.sync(staged->descriptor());
    if (done)
        done = staged->publishOver(path->name);
    if (done)
        done = path->syncFolder(ops);
    if (!done)
        fail(file, done.error());
}

/// Whether a path leads to the file of one of the databases.
bool isOpenDatabase(const EditorContext &editor, const QString &file) {
    struct stat chosen {};
    if (::stat(systemPath(file).c_str(), &chosen) != 0)
        return false;
    for (const int pane : {0, 1}) {
        struct stat open {};
        if (::stat(systemPath(openFilePath(editor, pane)).c_str(), &open) == 0 && open.st_dev == chosen.st_dev &&
            open.st_ino == chosen.st_ino)
            return true;
    }
    return false;
}

} // namespace

void addReportCommand(EditorContext &editor) {
    editor.commands().add(Command::ReportMenu, QObject::tr("Repor&t..."), [&editor] { ReportMenu_Click(editor); },
                          {.needs = Needs::BothDatabases});
}

void ReportMenu_Click(EditorContext &editor, const ComparisonChoice &choice) {
    editor.endEdit();
    FileDialogRequest request;
    request.action = FileDialogRequest::Save;
    request.title = QObject::tr("Report");
    request.defaultExtension = u"html"_s;
    request.initialName = u"differences.html"_s;
    request.filter = QObject::tr("Pages") + u"|*.html;*.htm"_s;
    const FileDialogAnswer answer = askForFile(editor.controls().window, request);
    if (answer.path.isEmpty())
        return;
    if (isOpenDatabase(editor, answer.path))
        throw std::runtime_error(QObject::tr("%1: it is an open database").arg(answer.path).toStdString());
    const BusyPointer busy;
    YieldTimer timer;
    // Whatever comes of it, other tables than the shown ones are current then.
    for (const int pane : {0, 1})
        editor.pane(pane).currentTableLost();
    const DatabaseDifference difference =
        compareDatabases(editor.OggettoDtb(0), editor.OggettoDtb(1), choice, [&] { timer.yieldIfDue(); });
    writeReport(editor, answer.path, difference);
}

} // namespace qir
