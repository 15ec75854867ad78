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
        Desktop, ///< The desktop's, where it has one and Qt::AA_DontUseNativeDialogs is not set.
    };

    Action action = Open;
    QString title;
    QString defaultExtension; ///< Of a typed name without one: see askForFile(). "" for none.
    QString initialFolder;    ///< "" for the current one.
    QString initialName;
    QString filter; ///< Descriptions and patterns in turn, all separated by "|"; patterns of one filter by ";".
    QString kind;   ///< The extension of the filter to start with; "" for the first one.
    Look look = Desktop;
};

struct FileDialogAnswer {
    QString path;         ///< As chosen, absolute; "" after a cancel.
    bool existed = false; ///< Something stood under this very name when the dialog ended.
};

/// Shows the file dialog (QFileDialog). A name typed to be opened is the exact one where there is a file of that name,
/// else the one that differs only in case, else the same with the default extension; where none of them reaches a file
/// the dialog says so and stays; after the desktop's own, which is gone by then, that is told and counts as a cancel.
/// One typed to be saved under gets the extension where it has none. The program's current folder is afterwards what it
/// was before, however the dialog ends.
FileDialogAnswer askForFile(QWidget *parent, const FileDialogRequest &request);

/// A "description|pattern|..." filter as Qt's name filters, each with its patterns in parentheses at the end.
QStringList nameFilters(const QString &filter);

} // namespace qir
