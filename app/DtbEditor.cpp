#include "app/DtbEditor.h"

#include "app/Controls.h"
#include "app/Layout.h"
#include "app/Menus.h"
#include "app/shared/ActivePane.h"
#include "platform/controls/Grid.h"
#include "platform/controls/ListBox.h"
#include "platform/loop/MessageLoop.h"
#include "view/ColumnFit.h"

#include <QAction>
#include <QCloseEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>

namespace qir {

using namespace Qt::StringLiterals;

DtbEditor::DtbEditor()
    : m_differingTables(m_editor)
    , m_alignment(m_editor, m_differingTables)
    , m_differences(m_editor, m_differingTables)
    , m_tables(m_editor, m_differences)
    , m_cellEditor(m_editor, m_differingTables)
    , m_clipboard(m_editor, m_differences, m_tables)
    , m_sorting(m_editor, m_differences, m_tables)
    , m_gridPopups(m_editor)
    , m_gridEvents(m_editor, m_cellEditor, m_clipboard, m_gridPopups)
    , m_gridConnections(m_editor, m_gridEvents, m_cellEditor)
    , m_open(m_editor, m_alignment, m_differences, m_tables)
    , m_close(m_editor)
    , m_structure(m_editor, m_alignment, m_differences, m_tables) {
    setObjectName(u"DtbEditor"_s);
    setWindowTitle(u"QIR Database Editor"_s);
    setMinimumSize(minimumWindowSize());
    resize(1000, 700);
    buildControls(*this, m_editor.controls);
    buildMenus(*this, m_editor.controls);
    for (const int pane : {0, 1})
        connectPane(pane);
    connectCommands();
    SettaColoriIndexAttivo(m_editor);
    AbilitaMenu(m_editor, -1);
    if (MessageLoop *loop = MessageLoop::instance()) {
        loop->setWindow(this);
        loop->addSettling([this] { m_tables.settlePanes(); });
    }
}

// Components die before the controls that show them.
DtbEditor::~DtbEditor() {
    for (QirDatabase &database : m_editor.state.OggettoDtb)
        database.release();
}

StartResult DtbEditor::Form_Load(const QString &commandLine) {
    return m_open.Form_Load(commandLine);
}

void DtbEditor::connectPane(int pane) {
    const PaneControls &controls = m_editor.controls.pane[static_cast<std::size_t>(pane)];
    connect(controls.ListaTabelle, &ListBox::Click, this,
            [this, pane] { runCommand([&] { m_tables.ListaTabelle_Click(pane); }); });
    m_gridConnections.connectPane(pane);
    for (QWidget *control : std::initializer_list<QWidget *>{controls.IDtb, controls.nomelab, controls.ListaTabelle,
                                                             controls.Tabella, controls.txtEdit})
        control->installEventFilter(this);
    m_structure.connectPane(pane);
}

bool DtbEditor::eventFilter(QObject *watched, QEvent *event) {
    for (const int pane : {0, 1}) {
        const PaneControls &controls = m_editor.controls.pane[static_cast<std::size_t>(pane)];
        if (event->type() == QEvent::MouseButtonPress) {
            if (watched == controls.IDtb)
                runCommand([&] { m_tables.IDtb_Click(pane); });
            else if (watched == controls.nomelab)
                runCommand([&] { m_tables.nomelab_Click(pane); });
        } else if (event->type() == QEvent::FocusIn &&
                   (watched == controls.ListaTabelle || watched == controls.Tabella || watched == controls.txtEdit)) {
            takeFocus(pane, static_cast<QFocusEvent *>(event)->reason());
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void DtbEditor::takeFocus(int pane, Qt::FocusReason reason) {
    // Focus that a person moves makes the pane active; focus that comes back to the window, or that goes elsewhere
    // because a control was hidden, does not.
    const bool byPerson = reason == Qt::MouseFocusReason || reason == Qt::TabFocusReason ||
                          reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
    const MessageLoop *loop = MessageLoop::instance();
    if (byPerson && pane != m_editor.state.IndexAttivo && m_editor.state.IndexAttivo >= 0 &&
        !(loop && loop->commandRunning()))
        runCommand([&] { activatePane(m_editor, pane); });
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
    onCommand(Command::EndMenu, [this] { close(); });
    onCommand(Command::ColumnSizeAdjust, [this] { ColumnSizeAdjust_Click(m_editor); });
    onCommand(Command::SortFPOP, [this] { m_sorting.SortFPOP_Click(); });
    onCommand(Command::CopyMenu, [this] { m_clipboard.COPIA_AreaTabella(m_editor.state.IndexAttivo); });
    onCommand(Command::PasteMenu, [this] { m_clipboard.INCOLLA_AreaTabella(m_editor.state.IndexAttivo); });
    m_structure.connectCommands(
        [this](Command command, std::function<void()> procedure) { onCommand(command, std::move(procedure)); });
}

void DtbEditor::resizeEvent(QResizeEvent *event) {
    QMainWindow::resizeEvent(event);
    RicalcolaSistemazioneForm(m_editor);
}

void DtbEditor::changeEvent(QEvent *event) {
    QMainWindow::changeEvent(event);
    // The panes' colours are taken from the desktop's scheme, which may change while the window stands.
    if (event->type() == QEvent::PaletteChange && m_editor.controls.window != nullptr)
        SettaColoriIndexAttivo(m_editor);
}

void DtbEditor::closeEvent(QCloseEvent *event) {
    runCommand([this] { m_close.Form_QueryUnload(); });
    event->accept();
    if (MessageLoop *loop = MessageLoop::instance())
        loop->endProgram();
}

} // namespace qir
