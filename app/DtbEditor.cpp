#include "app/DtbEditor.h"

#include "app/Controls.h"
#include "app/HelpCommands.h"
#include "app/Layout.h"
#include "app/Menus.h"
#include "app/PasswordCommand.h"
#include "app/shared/Funzioni.h"
#include "pane/ActivePane.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"
#include "view/ColumnFit.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLayout>
#include <QSessionManager>

namespace qir {

using namespace Qt::StringLiterals;

DtbEditor::DtbEditor()
    : m_notices(*this)
    , m_focus(m_editor)
    , m_equalTables(m_editor)
    , m_marks(m_editor, m_equalTables)
    , m_alignment(m_editor, m_marks)
    , m_differences(m_editor, m_marks, m_equalTables)
    , m_tables(m_editor, m_differences)
    , m_gridSave(m_editor, m_differences)
    , m_cellEditor(m_editor, m_marks)
    , m_clipboard(m_editor, m_gridSave, m_tables)
    , m_sorting(m_editor, m_gridSave, m_tables)
    , m_gridPopups(m_editor)
    , m_gridEvents(m_editor, m_cellEditor, m_clipboard, m_gridPopups)
    , m_gridConnections(m_editor, m_gridEvents, m_cellEditor)
    , m_open(m_editor, m_alignment, m_differences, m_tables, m_notices)
    , m_save(m_editor)
    , m_close(m_editor, m_alignment, m_differences)
    , m_structure(m_editor, m_alignment, m_differences, m_tables)
    , m_modes(m_editor, m_alignment, m_differences, m_tables) {
    setObjectName(u"DtbEditor"_s);
    setWindowTitle(applicationTitle());
    setMinimumSize(minimumWindowSize());
    resize(1000, 700);
    buildControls(*this, m_editor);
    buildMenus(*this, m_editor.controls);
    for (const int pane : {0, 1})
        connectPane(pane);
    m_gridPair.emplace(m_editor.Tabella(0), m_editor.Tabella(1));
    connectCommands();
    SettaColoriIndexAttivo(m_editor);
    AbilitaMenu(m_editor, -1);
    if (MessageLoop *loop = MessageLoop::instance()) {
        loop->setWindow(this);
        loop->addSettling([this] { m_tables.settlePanes(); });
        loop->addSettling([this] { m_notices.show(); });
    }
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &DtbEditor::endWithSession, Qt::DirectConnection);
}

// Components die before the controls that show them.
DtbEditor::~DtbEditor() {
    for (const int pane : {0, 1})
        m_editor.pane(pane).releaseDatabase();
    m_notices.show();
}

StartResult DtbEditor::Form_Load(const QString &commandLine) {
    return m_open.Form_Load(commandLine);
}

void DtbEditor::connectPane(int pane) {
    const PaneControls &controls = m_editor.pane(pane).controls();
    connect(controls.ListaTabelle, &ListBox::Click, this,
            [this, pane] { runCommand([&] { m_tables.ListaTabelle_Click(pane); }); });
    m_gridConnections.connectPane(pane);
    m_structure.connectPane(pane);
    m_focus.watch(pane);
}

void DtbEditor::onCommand(Command command, std::function<void()> procedure) {
    QAction &action = m_editor.controls.action(command);
    action.setEnabled(true);
    connect(&action, &QAction::triggered, this, [procedure = std::move(procedure)] { runCommand(procedure); });
}

void DtbEditor::connectCommands() {
    // What has no procedure yet stays disabled.
    for (QAction *action : m_editor.controls.actions)
        action->setEnabled(false);
    onCommand(Command::OpenDatabase, [this] { m_open.OpenDatabase_Click(); });
    onCommand(Command::SaveMenu, [this] { m_save.SaveMenu_Click(); });
    onCommand(Command::SaveAsMenu, [this] { m_save.SaveAsMenu_Click(); });
    onCommand(Command::CloseDatabaseMenu, [this] { m_close.CloseDatabaseMenu_Click(); });
    onCommand(Command::ChangePassword, [this] { ChangePassword_Click(m_editor); });
    onCommand(Command::EndMenu, [this] { EndMenu_Click(); });
    onCommand(Command::OneMenu, [this] { m_modes.OneMenu_Click(); });
    onCommand(Command::TwoMenu, [this] { m_modes.TwoMenu_Click(); });
    onCommand(Command::CompareAgainMenu, [this] { m_modes.CompareAgainMenu_Click(); });
    onCommand(Command::OtherPaneMenu, [this] { m_modes.OtherPaneMenu_Click(); });
    onCommand(Command::HelpKeysMenu, [this] { HelpKeysMenu_Click(m_editor); });
    onCommand(Command::AboutMenu, [this] { AboutMenu_Click(m_editor); });
    onCommand(Command::ColumnSizeAdjust, [this] { ColumnSizeAdjust_Click(m_editor); });
    onCommand(Command::SortFPOP, [this] { m_sorting.SortFPOP_Click(); });
    onCommand(Command::CopyMenu, [this] { m_clipboard.COPIA_AreaTabella(m_editor.IndexAttivo()); });
    onCommand(Command::PasteMenu, [this] { m_clipboard.INCOLLA_AreaTabella(m_editor.IndexAttivo()); });
    m_structure.connectCommands(
        [this](Command command, std::function<void()> procedure) { onCommand(command, std::move(procedure)); });
}

void DtbEditor::resizeEvent(QResizeEvent *event) {
    QMainWindow::resizeEvent(event);
    Form_Resize();
}

void DtbEditor::Form_Resize() {
    RicalcolaSistemazioneForm(m_editor);
}

void DtbEditor::EndMenu_Click() {
    close(); // which asks about both databases
}

void DtbEditor::changeEvent(QEvent *event) {
    QMainWindow::changeEvent(event);
    if (m_editor.controls.window == nullptr)
        return;
    // The panes' colours are taken from the desktop's scheme, which may change while the window stands; so may the
    // font, by which the menu bar's height changes too.
    if (event->type() == QEvent::PaletteChange) {
        SettaColoriIndexAttivo(m_editor);
    } else if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        layout()->activate();
        RicalcolaSistemazioneForm(m_editor);
    }
}

void DtbEditor::closeEvent(QCloseEvent *event) {
    bool released = false;
    runCommand([&] { released = m_close.Form_QueryUnload(); });
    m_notices.show(); // what the last release had to tell
    event->setAccepted(released);
    if (!released)
        return;
    if (MessageLoop *loop = MessageLoop::instance())
        loop->endProgram();
    // Whatever else stands open: Qt by itself would wait for a menu that lost its window's attention.
    QMetaObject::invokeMethod(
        this, [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
}

void DtbEditor::endWithSession(QSessionManager &manager) {
    // Where nothing may be asked now, nothing is decided: what is not saved waits in the component's journal.
    if (!manager.allowsInteraction())
        return;
    // A dialog that stands open is answered first.
    if (QApplication::activeModalWidget() != nullptr) {
        manager.cancel();
        return;
    }
    if (close())
        manager.release();
    else
        manager.cancel();
}

} // namespace qir
