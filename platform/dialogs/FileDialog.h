#pragma once

#include <QString>
#include <QStringList>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace qir {

/// What a file dialog is asked for.
struct FileDialogRequest {
    enum Action { Open, Save };
    enum Look {
        Own,     ///< Qt's own dialog: the same everywhere.
        Desktop, ///< The desktop's, where it has one.
    };

    Action action = Open;
    QString title;
    QString defaultExtension; ///< Added to a typed name without one; "" for none.
    QString initialFolder;    ///< "" for the current one.
    QString initialName;
    QString filter; ///< Descriptions and patterns in turn, all separated by "|"; patterns of one filter by ";".
    Look look = Own;
};

struct FileDialogAnswer {
    QString path;         ///< As chosen, absolute; "" after a cancel.
    bool existed = false; ///< Something stood under this very name when the dialog ended.
};

/// Shows the file dialog (QFileDialog). The program's current folder is afterwards what it was before, however the
/// dialog ends.
FileDialogAnswer askForFile(QWidget *parent, const FileDialogRequest &request);

/// A "description|pattern|..." filter as Qt's name filters, each with its patterns in parentheses at the end.
QStringList nameFilters(const QString &filter);

} // namespace qir
