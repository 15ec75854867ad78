#include "app/shared/Funzioni.h"

#include "base/FileNames.h"
#include "db/ChosenPlaces.h"
#include "db/HeaderPeek.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/dialogs/FileDialog.h"
#include "platform/grid/ColumnMeasure.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// Where the file of a dialog's answer stands: a new one gets the upper-cased name in the folder chosen.
QString chosenPlace(const FileDialogAnswer &answer) {
    const QFileInfo chosen(answer.path);
    return answer.existed ? answer.path : chosen.absolutePath() + u'/' + chosen.fileName().trimmed().toUpper();
}

/// Why nothing may be saved in a place: a file stands there that the dialog did not show as existing. "" when it may.
QString objectionToSaving(const FileDialogAnswer &answer, const QString &place) {
    if (answer.existed)
        return {};
    const Result<QString> reached = reachIgnoringCase(place);
    if (!reached)
        return reached.error().text;
    if (QFileInfo::exists(*reached))
        return QObject::tr("'%1' would replace '%2', which is not the name chosen").arg(place, *reached);
    return {};
}

} // namespace

QString applicationTitle() {
    return QObject::tr("QIR Database Editor");
}

QString databaseFileFilter() {
    return QObject::tr("Device Data Files(*.DDB)|*.DDB|Display Data Files(*.WDB)|*.WDB|User Data Files(*.UDB)|*.UDB|"
                       "User Info Files(*.IDB)|*.IDB|Settings Data Files(*.SDB)|*.SDB");
}

void CaricaListaTabelle(const QirDatabase &database, ListBox &lista) {
    const int remembered = lista.ListIndex();
    lista.clear();
    const int tables = database.QIRTablesCount();
    for (int i = 1; i <= tables; ++i) {
        lista.addItem(database.QIRTableName(i));
        lista.setItemData(lista.NewIndex(), i);
    }
    if (remembered < lista.ListCount())
        lista.setListIndex(remembered);
    else if (lista.ListCount() > 0)
        lista.setListIndex(0);
}

std::optional<QByteArray> LeggiIntestazione(const QString &fileName) {
    const Result<QString> reached = placeOf(fileName);
    return reached ? peekHeader(*reached) : std::nullopt;
}

int LeggiByteIntestazione(const QString &fileName, int position, int &error) {
    error = 1;
    const std::optional<QByteArray> header = LeggiIntestazione(fileName);
    if (!header || position < 0 || position >= header->size())
        return 0;
    const char digit = header->at(position);
    if (digit < '0' || digit > '9')
        return 0;
    error = 0;
    return digit - '0';
}

bool DatabaseProtetto(const QString &fileName) {
    int error = 0;
    return LeggiByteIntestazione(fileName, 3, error) == 1;
}

bool EsisteFile(const QString &fileName) {
    if (fileName.isEmpty())
        return false;
    const Result<QString> reached = placeOf(fileName);
    return reached && QFileInfo::exists(*reached);
}

QString MostraDialogoFile(QWidget *parent, FileDialogAction action, const QString &title,
                          const QString &defaultExtension, const QString &initialFolder, const QString &initialName,
                          const QString &filter, const QString &kind) {
    FileDialogRequest request;
    request.action = action == FileDialogAction::Open ? FileDialogRequest::Open : FileDialogRequest::Save;
    request.title = title;
    request.defaultExtension = defaultExtension;
    request.initialFolder = initialFolder;
    request.initialName = initialName;
    request.filter = filter;
    request.kind = kind;
    const FileDialogAnswer answer = askForFile(parent, request);
    QString name = answer.path.trimmed().toUpper();
    if (name.isEmpty())
        return {};
    const QString place = chosenPlace(answer);
    if (action == FileDialogAction::Save) {
        if (const QString objection = objectionToSaving(answer, place); !objection.isEmpty()) {
            messageBox(parent, objection, u"!"_s);
            return {};
        }
    }
    rememberPlace(name, place);
    return name;
}

QString nomeScelto(const QString &path) {
    const QString place = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    QString name = place.trimmed().toUpper();
    rememberPlace(name, place);
    return name;
}

void MisuraColonne(QLabel &label, Grid &grid, int firstColumn) {
    label.setFont(grid.font());
    YieldTimer timer;
    measureColumns(grid, label.font(), firstColumn, [&timer] { timer.yieldIfDue(); });
}

bool ChiediSalvataggio(QWidget *parent, const QirDatabase &database) {
    // Nothing can be asked about a component that is missing or does not answer: such a pane is closed in silence.
    try {
        const QString name = database.GetDatabaseFileName();
        if (name.isEmpty() || !database.DtbHasChanged())
            return true;
        const QString text = QObject::tr("Database '%1' has changed.\r\nDo you want to save the changes?").arg(name);
        return askUntilAnswered(parent, text, applicationTitle()) != Answer::No;
    } catch (const std::exception &) {
        return true;
    }
}

} // namespace qir
