#include "platform/dialogs/FileDialog.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

namespace qir {

namespace {

/// Goes back to the folder that was current.
class CurrentFolder {
public:
    CurrentFolder()
        : m_path(QDir::currentPath()) {}
    ~CurrentFolder() { QDir::setCurrent(m_path); }
    CurrentFolder(const CurrentFolder &) = delete;
    CurrentFolder &operator=(const CurrentFolder &) = delete;

    const QString &path() const { return m_path; }

private:
    QString m_path;
};

} // namespace

QStringList nameFilters(const QString &filter) {
    const QStringList parts = filter.split(u'|', Qt::KeepEmptyParts);
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts[i + 1];
        patterns.replace(u';', u' ');
        const QString inParentheses = u'(' + patterns + u')';
        const QString &description = parts[i];
        filters.append(description.endsWith(inParentheses) ? description : description + u' ' + inParentheses);
    }
    return filters;
}

FileDialogAnswer askForFile(QWidget *parent, const FileDialogRequest &request) {
    const CurrentFolder current;
    const bool saving = request.action == FileDialogRequest::Save;
    QFileDialog dialog(parent, request.title, request.initialFolder.isEmpty() ? current.path() : request.initialFolder);
    dialog.setOption(QFileDialog::DontUseNativeDialog, request.look == FileDialogRequest::Own);
    dialog.setAcceptMode(saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(saving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setDefaultSuffix(request.defaultExtension);
    const QStringList filters = nameFilters(request.filter);
    if (!filters.isEmpty())
        dialog.setNameFilters(filters);
    if (!request.initialName.isEmpty())
        dialog.selectFile(request.initialName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    const QString path = QDir::cleanPath(QFileInfo(dialog.selectedFiles().constFirst()).absoluteFilePath());
    return {path, QFileInfo::exists(path)};
}

} // namespace qir
