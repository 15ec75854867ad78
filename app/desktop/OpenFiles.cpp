#include "app/desktop/OpenFiles.h"

#include "app/shared/Funzioni.h"
#include "db/ChosenPlaces.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>

namespace qir {

QString openFileName(const EditorContext &editor, int pane) {
    return editor.nomelab(pane).text();
}

QString openFilePath(const EditorContext &editor, int pane) {
    const QString name = openFileName(editor, pane);
    if (name.isEmpty())
        return {};
    return QDir::cleanPath(QFileInfo(placeOf(name).value_or(name)).absoluteFilePath());
}

Protection protectionOf(const QString &fileName) {
    return DatabaseProtetto(fileName) ? Protection::Protected : Protection::Open;
}

void rememberOpenFile(EditorContext &editor, int pane) {
    const Protection own = protectionOf(openFileName(editor, pane));
    editor.remembered().noteFile(openFilePath(editor, pane), own);
    if (!editor.DtbAperto(0) || !editor.DtbAperto(1))
        return;
    if (openFilePath(editor, 0) == openFilePath(editor, 1))
        return; // a file beside itself is no pair to come back to
    const Protection other = protectionOf(openFileName(editor, 1 - pane));
    editor.remembered().notePair({openFilePath(editor, 0), openFilePath(editor, 1)},
                                 own == Protection::Open ? other : own);
}

} // namespace qir
