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

FilePair openPair(const EditorContext &editor) {
    return {openFilePath(editor, 0), openFilePath(editor, 1)};
}

Protection protectionOfPair(const EditorContext &editor) {
    const Protection left = protectionOf(openFileName(editor, 0));
    return left == Protection::Open ? protectionOf(openFileName(editor, 1)) : left;
}

void rememberOpenFile(EditorContext &editor, int pane) {
    editor.remembered().noteFile(openFilePath(editor, pane), protectionOf(openFileName(editor, pane)));
    if (!editor.DtbAperto(0) || !editor.DtbAperto(1))
        return;
    const FilePair pair = openPair(editor);
    if (pair.left != pair.right) // a file beside itself is no pair to come back to
        editor.remembered().notePair(pair, protectionOfPair(editor));
}

} // namespace qir
