#include "app/desktop/OpenFiles.h"

#include "app/shared/Funzioni.h"
#include "db/HeaderPeek.h"

#include <QLabel>

namespace qir {

QString openFileName(const EditorContext &editor, int pane) {
    return editor.nomelab(pane).text();
}

QString openFilePath(const EditorContext &editor, int pane) {
    return editor.pane(pane).filePath();
}

Protection openFileProtection(const EditorContext &editor, int pane) {
    const std::optional<QByteArray> header = peekHeader(openFilePath(editor, pane));
    return header && header->size() > 3 && header->at(3) == '1' ? Protection::Protected : Protection::Open;
}

Protection protectionOf(const QString &fileName) {
    return DatabaseProtetto(fileName) ? Protection::Protected : Protection::Open;
}

FilePair openPair(const EditorContext &editor) {
    return {openFilePath(editor, 0), openFilePath(editor, 1)};
}

Protection protectionOfPair(const EditorContext &editor) {
    const Protection left = openFileProtection(editor, 0);
    return left == Protection::Open ? openFileProtection(editor, 1) : left;
}

void rememberOpenFile(Remembered &remembered, const EditorContext &editor, int pane) {
    remembered.noteFile(openFilePath(editor, pane), openFileProtection(editor, pane));
    if (!editor.DtbAperto(0) || !editor.DtbAperto(1))
        return;
    const FilePair pair = openPair(editor);
    if (pair.left != pair.right) // a file beside itself is no pair to come back to
        remembered.notePair(pair, protectionOfPair(editor));
}

} // namespace qir
