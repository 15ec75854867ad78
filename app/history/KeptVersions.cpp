#include "app/history/KeptVersions.h"

#include "app/desktop/OpenFiles.h"
#include "app/history/KeptWindow.h"
#include "base/FileNames.h"
#include "base/StagedFile.h"
#include "base/words/StorageWords.h"
#include "platform/dialogs/Dialogs.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <stdexcept>
#include <tuple>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

bool isEnded(const KeptFile &kept) {
    return kept.kind == KeptKind::Ended;
}

QString canonical(const QString &path) {
    const QString found = QFileInfo(reachIgnoringCase(path).value_or(path)).canonicalFilePath();
    return found.isEmpty() ? path : found;
}

[[noreturn]] void fail(const QString &path, SystemError error) {
    throw std::runtime_error(u"'%1': %2"_s.arg(path, systemErrorWords(error)).toStdString());
}

/// By where a version stands, or by its file's name where it has no place beside it.
bool isVersionOf(const KeptFile &kept, const QString &file) {
    if (isEnded(kept))
        return canonical(kept.of) == file;
    return std::ranges::any_of(keptFiles(file), [&](const KeptFile &own) { return own.path == kept.path; });
}

} // namespace

void KeptVersions::addCommands() {
    m_editor.commands().add(Command::KeptVersionsMenu, tr("Kept &Versions..."), [this] { KeptVersionsMenu_Click(); });
}

std::vector<KeptFile> KeptVersions::find() const {
    std::vector<KeptFile> all = keptInStateFolder();
    for (const int pane : {0, 1}) {
        if (!m_editor.DtbAperto(pane))
            continue;
        for (KeptFile &kept : keptFiles(canonical(openFilePath(m_editor, pane))))
            if (std::ranges::none_of(all, [&](const KeptFile &known) { return known.path == kept.path; }))
                all.push_back(std::move(kept));
    }
    std::ranges::sort(all, {}, [](const KeptFile &kept) { return std::tuple(kept.time, kept.number, kept.path); });
    return all;
}

int KeptVersions::currentPane(const KeptFile &kept) const {
    const int active = m_editor.IndexAttivo();
    const auto holdsIt = [&](int pane) {
        return pane >= 0 && m_editor.DtbAperto(pane) &&
               (isEnded(kept) && kept.of.isEmpty() ? openFileProtection(m_editor, pane) == Protection::Protected
                                                   : isVersionOf(kept, canonical(openFilePath(m_editor, pane))));
    };
    for (const int pane : {active, 1 - active})
        if (active >= 0 && holdsIt(pane))
            return pane;
    // Changes are made to their own file alone; any other version is a file that can stand beside everything.
    return active >= 0 && m_editor.DtbAperto(active) && !isEnded(kept) ? active : -1;
}

QString KeptVersions::fileToOpen(const KeptFile &kept) const {
    if (!isEnded(kept))
        return kept.path;
    if (!kept.of.isEmpty())
        return kept.of;
    const int pane = currentPane(kept);
    return pane < 0 ? QString() : openFilePath(m_editor, pane);
}

void KeptVersions::KeptVersionsMenu_Click() {
    m_editor.endEdit();
    KeptWindow window({.find = [this] { return find(); },
                       .canOpen = [this](const KeptFile &kept) { return !fileToOpen(kept).isEmpty(); },
                       .canCompare = [this](const KeptFile &kept) { return currentPane(kept) >= 0; },
                       .remove = [this](const KeptFile &kept, QWidget *parent) { remove(kept, parent); }},
                      m_editor.controls().window);
    window.exec();
    if (window.choice() == KeptWindow::Choice::None)
        return;
    const KeptFile &kept = window.chosen();
    const QString file = fileToOpen(kept);
    const int current = currentPane(kept);
    // Changes that were given up would take the place of the file that they were made to, where that is open.
    if (window.choice() == KeptWindow::Choice::Compare || (isEnded(kept) && current >= 0))
        open(kept, [&] { m_opening.openBeside(current, file); });
    else
        open(kept, [&] { m_opening.openFile(std::max(m_editor.IndexAttivo(), 0), file); });
}

/// Changes that were given up come back before their file is opened, and are given up again where that did not take
/// them: it was not opened, or they are another one's.
void KeptVersions::open(const KeptFile &kept, const std::function<void()> &procedure) {
    if (!isEnded(kept)) {
        procedure();
        return;
    }
    FileOps &ops = FileOps::system();
    const auto journal = bringBackEnded(ops, kept.path);
    if (!journal)
        fail(kept.path, journal.error());
    const auto end = qScopeGuard([&] { (void)endAgainUnlessTaken(ops, *journal); });
    procedure();
}

void KeptVersions::remove(const KeptFile &kept, QWidget *parent) const {
    if (askYesNo(parent, tr("Do you want to remove '%1' for good ?").arg(kept.path), u"?"_s) != Answer::Yes)
        return;
    FileOps &ops = FileOps::system();
    const auto path = ResolvedPath::of(ops, systemPath(kept.path));
    const auto removed =
        path ? ops.unlinkAt(path->folder.descriptor(), path->name) : SystemResult<void>(tl::unexpected(path.error()));
    if (!removed)
        messageBox(parent, tr("'%1' could not be removed").arg(kept.path), u"!"_s,
                   spokenWords(systemErrorWords(removed.error())));
}

} // namespace qir
