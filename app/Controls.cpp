#include "app/Controls.h"

#include "app/FileNameLabel.h"
#include "app/PaneFrame.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QProgressBar>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// Names a control of a pane: its name in the program with the pane's index, and what a screen reader says.
void name(QWidget &control, const char *objectName, int pane, const QString &accessibleName) {
    control.setObjectName(QLatin1StringView(objectName) + u'_' + QString::number(pane));
    control.setAccessibleName((pane == 0 ? u"Left "_s : u"Right "_s) + accessibleName);
}

PaneControls buildPane(QWidget &parent, int pane) {
    PaneControls controls;
    controls.IDtb = new PaneFrame(pane == 0 ? u"Left"_s : u"Right"_s, &parent);
    name(*controls.IDtb, "IDtb", pane, u"pane"_s);
    controls.IDtb->setAutoFillBackground(true);

    controls.nomelab = new FileNameLabel(controls.IDtb);
    name(*controls.nomelab, "nomelab", pane, u"file name"_s);
    controls.nomelab->setAutoFillBackground(true);
    controls.nomelab->setTextFormat(Qt::PlainText);
    controls.nomelab->hide();

    controls.ground = new QWidget(controls.IDtb);
    controls.ground->setObjectName(u"ground_%1"_s.arg(pane));
    controls.ground->setAutoFillBackground(true);
    controls.ground->setAttribute(Qt::WA_TransparentForMouseEvents); // a click on it is one on the frame
    controls.ground->hide();

    controls.ListaTabelle = new ListBox(controls.IDtb, ListBox::Sorted);
    name(*controls.ListaTabelle, "ListaTabelle", pane, u"tables"_s);
    controls.ListaTabelle->setVisibleFlag(false);

    controls.Tabella = new Grid(controls.IDtb);
    name(*controls.Tabella, "Tabella", pane, u"table"_s);
    controls.Tabella->setVisibleFlag(false);

    controls.hint = new QLabel(controls.IDtb);
    controls.hint->setObjectName(u"hint_%1"_s.arg(pane));
    controls.hint->setTextFormat(Qt::PlainText);
    controls.hint->setFocusPolicy(Qt::TabFocus); // the keyboard reaches a pane without a database by it
    controls.hint->setAlignment(Qt::AlignCenter);
    controls.hint->setWordWrap(true);
    controls.hint->setAttribute(Qt::WA_TransparentForMouseEvents);

    controls.txtEdit = new QLineEdit(controls.IDtb);
    name(*controls.txtEdit, "txtEdit", pane, u"cell editor"_s);
    controls.txtEdit->setFrame(false);
    controls.txtEdit->hide();
    return controls;
}

} // namespace

void showHint(const EditorContext &editor, int pane, const QString &failure) {
    QString text = QObject::tr("No database is open here.\nFile > Open (Ctrl+O) opens one.");
    if (!failure.isEmpty())
        text.prepend(failure + u"\n\n"_s);
    QLabel &hint = *editor.pane(pane).controls().hint;
    hint.setText(text);
    hint.setAccessibleName((pane == 0 ? u"Left "_s : u"Right "_s) + u"pane: "_s + text);
}

void buildControls(QMainWindow &window, EditorContext &editor) {
    EditorControls &controls = editor.controls;
    auto *area = new QWidget(&window);
    window.setCentralWidget(area);
    controls.window = &window;
    controls.commands.setOwner(window);
    for (const int pane : {0, 1}) {
        editor.pane(pane).setControls(buildPane(*area, pane));
        showHint(editor, pane, QString());
    }

    controls.ProgressBarCompare = new QProgressBar(area);
    controls.ProgressBarCompare->setObjectName(u"ProgressBarCompare"_s);
    controls.ProgressBarCompare->setAccessibleName(u"Progress of the comparison"_s);
    controls.ProgressBarCompare->setTextVisible(false);
    controls.ProgressBarCompare->hide();

    controls.AutoSizeLabelTwips = new QLabel(area);
    controls.AutoSizeLabelTwips->setObjectName(u"AutoSizeLabelTwips"_s);
    controls.AutoSizeLabelTwips->hide();

    controls.ProSort = new ListBox(area, ListBox::Sorted);
    controls.ProSort->setObjectName(u"ProSort"_s);
    controls.ProSort->setFocusPolicy(Qt::NoFocus); // nobody ever reaches it
    controls.ProSort->hide();
}

} // namespace qir
