#include "app/desktop/NewDatabase.h"

#include "app/desktop/OpenFiles.h"
#include "app/shared/Funzioni.h"
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
    if (const QString reason = misleading(database, name); !reason.isEmpty()) {
        messageBox(window, reason, u"!"_s);
        return false;
    }
    tellPlace(database, name);
    if (!database.SetDatabaseFileName(name)) {
        messageBox(window, QObject::tr("Can't assign new file name"), u"!"_s);
        return false;
    }
    database.setDtbHasChanged(true); // an unchanged database may not be written
    try {
        database.SaveDtb();
    } catch (...) {
        database.setDtbHasChanged(false); // nor may its release try again
        throw;
    }
    database.setDtbHasChanged(false);
    return true;
}

} // namespace

void NewDatabase_Click(EditorContext &editor, const std::function<void(const QString &path)> &open) {
    QWidget *window = editor.controls.window;
    Remembered &remembered = editor.remembered();
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
