#include "app/Controls.h"

#include "app/look/AccessibleParts.h"
#include "pane/FileNameLabel.h"
#include "pane/PaneFrame.h"
#include "pane/PaneSplitter.h"
#include "platform/controls/CellTextBox.h"
#include "platform/dialogs/PromptWrapping.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QProgressBar>

#include <array>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// Names a control of a pane: its name in the program with the pane's index, and what a screen reader says in the left
/// and in the right pane.
void name(QWidget &control, const char *objectName, int pane, const std::array<QString, 2> &accessibleNames) {
    control.setObjectName(QLatin1StringView(objectName) + u'_' + QString::number(pane));
    control.setAccessibleName(accessibleNames.at(static_cast<std::size_t>(pane)));
}

PaneControls buildPane(QWidget &parent, int pane) {
    PaneControls controls;
    controls.IDtb = new PaneFrame(pane == 0 ? QObject::tr("Left") : QObject::tr("Right"), &parent);
    name(*controls.IDtb, "IDtb", pane, {QObject::tr("Left pane"), QObject::tr("Right pane")});
    controls.IDtb->setAutoFillBackground(true);

    controls.nomelab = new FileNameLabel(controls.IDtb);
    name(*controls.nomelab, "nomelab", pane, {QObject::tr("Left file name"), QObject::tr("Right file name")});
    controls.nomelab->setAutoFillBackground(true);
    controls.nomelab->setTextFormat(Qt::PlainText);
    controls.nomelab->hide();

    controls.ground = new QWidget(controls.IDtb);
    controls.ground->setObjectName(u"ground_%1"_s.arg(pane));
    controls.ground->setAutoFillBackground(true);
    controls.ground->setAttribute(Qt::WA_TransparentForMouseEvents); // a click on it is one on the frame
    controls.ground->hide();

    controls.filter = new QLineEdit(controls.IDtb);
    controls.filter->setAcceptDrops(false); // a file that is dropped there is meant for the pane
    name(*controls.filter, "tableFilter", pane,
         {QObject::tr("Filter of left tables"), QObject::tr("Filter of right tables")});
    controls.filter->setPlaceholderText(QObject::tr("Tables whose name holds..."));
    controls.filter->setClearButtonEnabled(true);
    controls.filter->hide();

    controls.ListaTabelle = new ListBox(controls.IDtb, ListBox::Sorted);
    name(*controls.ListaTabelle, "ListaTabelle", pane, {QObject::tr("Left tables"), QObject::tr("Right tables")});
    controls.ListaTabelle->setVisibleFlag(false);

    controls.Tabella = new Grid(controls.IDtb);
    name(*controls.Tabella, "Tabella", pane, {QObject::tr("Left table"), QObject::tr("Right table")});
    controls.Tabella->setVisibleFlag(false);

    controls.hint = new WrappedLabel(controls.IDtb);
    controls.hint->setObjectName(u"hint_%1"_s.arg(pane));
    controls.hint->setFocusPolicy(Qt::TabFocus); // the keyboard reaches a pane without a database by it
    controls.hint->setAlignment(Qt::AlignCenter);
    controls.hint->setAttribute(Qt::WA_TransparentForMouseEvents);

    controls.txtEdit = new CellTextBox(controls.IDtb);
    controls.txtEdit->setAcceptDrops(false);
    name(*controls.txtEdit, "txtEdit", pane, {QObject::tr("Left cell editor"), QObject::tr("Right cell editor")});
    controls.txtEdit->setFrame(false);
    controls.txtEdit->setLayoutDirection(Qt::LeftToRight); // a number's sign stays before it
    controls.txtEdit->hide();

    controls.splitter = new PaneSplitter(controls.IDtb); // made last: the keyboard comes to it behind list and grid
    name(*controls.splitter, "splitter", pane,
         {QObject::tr("Border below left tables"), QObject::tr("Border below right tables")});
    controls.splitter->hide();
    return controls;
}

} // namespace

void showHint(const EditorContext &editor, int pane, const QString &failure) {
    QString text = QObject::tr("No database is open here.\nOpen one (Ctrl+O), or drop a file here.");
    if (!failure.isEmpty())
        text.prepend(failure + u"\n\n"_s);
    QLabel &hint = *editor.pane(pane).controls().hint;
    hint.setText(text);
    hint.setAccessibleName((pane == 0 ? QObject::tr("Left pane: %1") : QObject::tr("Right pane: %1")).arg(text));
}

void buildControls(QMainWindow &window, EditorContext &editor) {
    EditorControls controls;
    installAccessibleParts();
    auto *area = new QWidget(&window);
    area->setObjectName(u"panes"_s);
    window.setCentralWidget(area);
    controls.window = &window;
    controls.commands.setOwner(window);
    for (const int pane : {0, 1}) {
        editor.pane(pane).setControls(buildPane(*area, pane));
        showHint(editor, pane, QString());
    }

    controls.ProgressBarCompare = new QProgressBar(area);
    controls.ProgressBarCompare->setObjectName(u"ProgressBarCompare"_s);
    controls.ProgressBarCompare->setAccessibleName(QObject::tr("Progress of the comparison"));
    controls.ProgressBarCompare->setTextVisible(false);
    controls.ProgressBarCompare->hide();

    auto *statusLeft = new FileNameLabel(area);
    statusLeft->setObjectName(u"statusLeft"_s);
    auto *statusRight = new FileNameLabel(area);
    statusRight->setObjectName(u"statusRight"_s);
    for (FileNameLabel *part : {statusLeft, statusRight})
        part->setTextFormat(Qt::PlainText);
    editor.status().setControls(*statusLeft, *statusRight, *controls.ProgressBarCompare);

    controls.AutoSizeLabelTwips = new QLabel(area);
    controls.AutoSizeLabelTwips->setObjectName(u"AutoSizeLabelTwips"_s);
    controls.AutoSizeLabelTwips->hide();

    controls.ProSort = new ListBox(area, ListBox::Sorted);
    controls.ProSort->setObjectName(u"ProSort"_s);
    controls.ProSort->setFocusPolicy(Qt::NoFocus); // nobody ever reaches it
    controls.ProSort->hide();
    editor.setControls(controls);
}

} // namespace qir
