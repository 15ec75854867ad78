#include "app/desktop/NewDatabase.h"

#include "app/desktop/OpenFiles.h"
#include "app/shared/Funzioni.h"
#include "base/UndoOnError.h"
#include "base/words/StorageWords.h"
#include "db/ChosenPlaces.h"
#include "platform/dialogs/Dialogs.h"

#include <QFileInfo>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// Whether one of the panes has the file at a path open: the release of that database could write over the new one.
bool isOpen(const EditorContext &editor, const QString &path) {
    // A file that was taken away meanwhile has no canonical path.
    const auto identity = [](const QFileInfo &file) {
        const QString canonical = file.canonicalFilePath();
        return canonical.isEmpty() ? file.absoluteFilePath() : canonical;
    };
    for (const int pane : {0, 1})
        if (editor.DtbAperto(pane) && identity(QFileInfo(openFilePath(editor, pane))) == identity(QFileInfo(path)))
            return true;
    return false;
}

/// Writes an empty database. False, with a message, where the name cannot be taken. Throws where it cannot be written.
bool makeEmpty(QWidget *window, const QString &name) {
    const QirDatabase database = QirDatabase::create();
    if (!canTakeName(window, database, name) || !takeName(window, database, name))
        return false;
    // A release must not try it again.
    undoneOnError([&] { writeAll(database); }, [&] { database.setDtbHasChanged(false); });
    return true;
}

} // namespace

bool canTakeName(QWidget *window, const QirDatabase &database, const QString &name) {
    const QString reason = misleading(database, name);
    if (!reason.isEmpty())
        messageBox(window, spokenWords(reason), u"!"_s);
    return reason.isEmpty();
}

bool takeName(QWidget *window, const QirDatabase &database, const QString &name) {
    tellPlace(database, name);
    const bool isTaken = database.SetDatabaseFileName(name);
    if (!isTaken)
        messageBox(window, QObject::tr("Can't assign new file name"), u"!"_s);
    return isTaken;
}

void writeAll(const QirDatabase &database) {
    database.setDtbHasChanged(true); // an unchanged database may not be written
    database.SaveDtb();
    database.setDtbHasChanged(false);
}

void NewDatabase_Click(EditorContext &editor, Remembered &remembered,
                       const std::function<void(const QString &path)> &open) {
    QWidget *window = editor.controls().window;
    const QString kind = remembered.kind().isEmpty() ? u"DDB"_s : remembered.kind();
    const QString name = MostraDialogoFile(window, FileDialogAction::Save, QObject::tr("New Database"), kind,
                                           remembered.folder(), QString(), databaseFileFilter(), kind);
    if (name.isEmpty())
        return;
    const QString path = placeOf(name).value_or(name);
    if (isOpen(editor, path)) {
        messageBox(window, QObject::tr("'%1' is open. Close it before making a new database of that name.").arg(path),
                   u"!"_s);
        return;
    }
    if (!makeEmpty(window, name))
        return;
    remembered.noteChosen(path, Protection::Open);
    open(path);
}

} // namespace qir
