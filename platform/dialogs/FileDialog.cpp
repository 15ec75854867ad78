#include "platform/dialogs/FileDialog.h"

#include "base/FileNames.h"
#include "platform/dialogs/Dialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSettings>

namespace qir {

using namespace Qt::StringLiterals;

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

/// Qt's own dialog writes the folders it has been in to a file of the user's that all programs share: what this program
/// remembers, and what it must not, is its own matter.
class SharedHistory {
public:
    SharedHistory() {
        const QSettings settings = shared();
        for (const QString &key : keys)
            m_values.append(settings.value(key));
    }
    ~SharedHistory() {
        QSettings settings = shared();
        for (qsizetype i = 0; i < keys.size(); ++i) {
            if (m_values[i].isValid())
                settings.setValue(keys[i], m_values[i]);
            else
                settings.remove(keys[i]);
        }
    }
    SharedHistory(const SharedHistory &) = delete;
    SharedHistory &operator=(const SharedHistory &) = delete;

private:
    static QSettings shared() { return QSettings(QSettings::UserScope, u"QtProject"_s); }

    const QStringList keys{u"FileDialog/history"_s, u"FileDialog/lastVisited"_s};
    QVariantList m_values;
};

/// The file or folder that a typed path reaches.
Result<QString> reachedByTyping(const QString &typed, const QString &extension) {
    QStringList tries{typed};
    if (!extension.isEmpty() && !QFileInfo(typed).fileName().contains(u'.'))
        tries.append(typed + u'.' + extension);
    for (const QString &path : tries) {
        const Result<QString> reached = reachIgnoringCase(path);
        if (!reached || QFileInfo::exists(*reached))
            return reached;
    }
    return failure(QObject::tr("'%1' was not found").arg(typed));
}

/// Whether a dialog is the desktop's: Qt's own has its controls before it shows.
bool isDesktops(const QFileDialog &dialog) {
    return dialog.findChild<QLineEdit *>(u"fileNameEdit"_s) == nullptr;
}

/// Finds the file itself: Qt's own would append the extension before it looks. The desktop's dialog is gone when it
/// tells what was chosen, so that it ends however that is, and what is wrong is told afterwards.
class OpenDialog : public QFileDialog {
public:
    OpenDialog(QWidget *parent, const FileDialogRequest &request, const QString &folder)
        : QFileDialog(parent, request.title, folder)
        , m_extension(request.defaultExtension) {
        setAcceptMode(QFileDialog::AcceptOpen);
        setFileMode(QFileDialog::AnyFile); // the other modes refuse a name before it was looked for
    }

    const QString &found() const { return m_found; }
    /// Why what the desktop's dialog gave cannot be opened; "" when it can.
    const QString &refusal() const { return m_refusal; }

    void accept() override {
        const QString typed = selectedFiles().value(0);
        const bool desktops = isDesktops(*this);
        if (!desktops && (typed.isEmpty() || QFileInfo(typed).isDir())) {
            QFileDialog::accept(); // goes into the folder
            return;
        }
        const Result<QString> reached = reachedByTyping(typed, m_extension);
        if (!reached) {
            if (desktops)
                m_refusal = reached.error().text;
            else
                messageBox(this, reached.error().text, u"!"_s);
        } else if (QFileInfo(*reached).isDir()) {
            setDirectory(*reached);
        } else {
            m_found = *reached;
        }
        if (desktops || !m_found.isEmpty())
            QDialog::accept();
    }

private:
    QString m_extension;
    QString m_found;
    QString m_refusal;
};

/// The extension that a name filter stands for: that of its first pattern, "" for none.
QString extensionOf(const QString &nameFilter) {
    const qsizetype start = nameFilter.lastIndexOf(u"(*."_s);
    const qsizetype end = start < 0 ? -1 : nameFilter.indexOf(QRegularExpression(u"[ )]"_s), start);
    return end < 0 ? QString() : nameFilter.sliced(start + 3, end - start - 3);
}

void selectKind(QFileDialog &dialog, const QString &kind) {
    for (const QString &filter : dialog.nameFilters())
        if (!kind.isEmpty() && extensionOf(filter).compare(kind, Qt::CaseInsensitive) == 0)
            dialog.selectNameFilter(filter);
}

/// Paths and names of files go from left to right whatever way the language is read.
void keepPathsReadable(const QFileDialog &dialog) {
    for (QWidget *control :
         {dialog.findChild<QWidget *>(u"lookInCombo"_s), dialog.findChild<QWidget *>(u"fileNameEdit"_s)})
        if (control != nullptr) // the desktop's has none
            control->setLayoutDirection(Qt::LeftToRight);
}

/// Sets up and shows a dialog. True when a file was chosen.
bool show(QFileDialog &dialog, const FileDialogRequest &request) {
    dialog.setOption(QFileDialog::DontUseNativeDialog, request.look == FileDialogRequest::Own);
    const QStringList filters = nameFilters(request.filter);
    if (!filters.isEmpty())
        dialog.setNameFilters(filters);
    selectKind(dialog, request.kind);
    if (!request.initialName.isEmpty())
        dialog.selectFile(request.initialName);
    keepPathsReadable(dialog);
    return dialog.exec() == QDialog::Accepted;
}

QString askForFileToOpen(QWidget *parent, const FileDialogRequest &request, const QString &folder) {
    OpenDialog dialog(parent, request, folder);
    const bool accepted = show(dialog, request);
    if (!dialog.refusal().isEmpty())
        messageBox(parent, dialog.refusal(), u"!"_s);
    return accepted ? dialog.found() : QString();
}

QString askForFileToSave(QWidget *parent, const FileDialogRequest &request, const QString &folder) {
    QFileDialog dialog(parent, request.title, folder);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(request.defaultExtension);
    if (!request.defaultExtension.isEmpty()) // who chooses another kind means its extension
        QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                         [&dialog](const QString &filter) { dialog.setDefaultSuffix(extensionOf(filter)); });
    return show(dialog, request) ? dialog.selectedFiles().value(0) : QString();
}

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
    const SharedHistory history;
    const QString folder = request.initialFolder.isEmpty() ? current.path() : request.initialFolder;
    const QString chosen = request.action == FileDialogRequest::Open ? askForFileToOpen(parent, request, folder)
                                                                     : askForFileToSave(parent, request, folder);
    if (chosen.isEmpty())
        return {};
    const QString path = QDir::cleanPath(QFileInfo(chosen).absoluteFilePath());
    return {path, QFileInfo::exists(path)};
}

} // namespace qir
