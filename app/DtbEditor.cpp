#include "app/DtbEditor.h"

#include "app/Controls.h"
#include "app/HelpCommands.h"
#include "app/Layout.h"
#include "app/Menus.h"
#include "app/PasswordCommand.h"
#include "app/ReportCommand.h"
#include "app/desktop/OpenFiles.h"
#include "app/desktop/WindowState.h"
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
    , m_differingTables(m_editor)
    , m_status(m_editor, m_differingTables, m_stored, m_signs)
    , m_differenceWords(m_editor, m_differingTables)
    , m_walk(m_editor, m_differingTables, [this] { m_tables.settlePanes(); })
    , m_strips(m_editor, m_walk)
    , m_summary(m_editor, m_differingTables, m_walk, [this] { m_modes.CompareAgainMenu_Click(); })
    , m_onlyDifferences(m_editor, m_differences)
    , m_tables(m_editor, m_differences, m_gridCommands)
    , m_gridSave(m_editor, m_differences)
    , m_stored(m_editor)
    , m_cellEditor(m_editor, m_marks, m_stored)
    , m_clipboard(m_editor, m_gridSave, m_tables, m_stored)
    , m_edits(m_editor, m_gridSave, m_tables, m_stored)
    , m_pasteAll(m_editor, m_gridSave, m_tables, m_stored)
    , m_goTo(m_editor)
    , m_cellText(m_editor, m_cellEditor)
    , m_tableFilter(m_editor)
    , m_sorting(m_editor, m_gridSave, m_tables)
    , m_gridPopups(m_editor)
    , m_gridEvents(m_editor, m_cellEditor, m_clipboard, m_gridPopups, m_gridCommands)
    , m_changes(m_editor, changeActions())
    , m_signs(m_editor)
    , m_open(m_editor, m_remembered, m_alignment, m_differences, m_tables, m_notices, m_changes)
    , m_save(m_editor, m_remembered, m_changes)
    , m_close(m_editor, m_alignment, m_differences)
    , m_listPopup(m_editor)
    , m_tableCommands(m_editor, m_alignment, m_differences, m_tables)
    , m_fieldCommands(m_editor, m_differences, m_tables, m_stored)
    , m_recordCommands(m_editor, m_differences, m_tables)
    , m_cloneCommands(m_editor, m_alignment, m_differences, m_tables, m_gridSave)
    , m_carryCommands(m_editor, m_differences, m_tables, m_cloneCommands, m_walk)
    , m_modes(m_editor, m_alignment, m_differences, m_tables)
    , m_filesAtHand(m_editor, m_remembered, fileOpening())
    , m_colours(m_editor, m_remembered)
    , m_toolBar(m_editor, m_remembered, [this] { layOutAnew(); })
    , m_room(m_editor, m_remembered, [this] { layOutAnew(); })
    , m_keyedCarry(m_editor, m_differences, m_tables)
    , m_keyed(m_editor, keyedActions())
    , m_undo(m_editor, m_alignment, m_differences, m_tables)
    , m_kept(m_editor, keptOpening())
    , m_conflicts(m_editor, m_alignment, m_differences, m_tables, [this] { m_save.SaveMenu_Click(); }) {
    setObjectName(u"DtbEditor"_s);
    setWindowTitle(applicationTitle());
    setMinimumSize(minimumWindowSize());
    resize(1000, 700);
    restoreWindowPlace(*this, m_remembered);
    buildParts();
    SettaColoriIndexAttivo(m_editor);
    AbilitaMenu(m_editor, -1);
    settleWithLoop();
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &DtbEditor::endWithSession, Qt::DirectConnection);
}

void DtbEditor::buildParts() {
    buildControls(*this, m_editor);
    m_find.emplace(m_editor, m_differences, m_tables, m_stored);
    addCommands();
    buildMenus(*this, m_editor);
    m_filesAtHand.addMenus();
    m_undo.watchMenu();
    m_toolBar.build(*this);
    m_changes.build(*this);
    m_signs.build();
    connect(&m_signs, &FileSigns::changed, this, [this] {
        // A command that runs has its state told at its end.
        if (const MessageLoop *loop = MessageLoop::instance(); loop == nullptr || !loop->commandRunning())
            m_status.show();
    });
    connect(&m_changes, &OutsideChanges::fileTouched, this, [this](int pane) { m_signs.lookAtFile(pane); });
    for (const int pane : {0, 1})
        connectPane(pane);
    m_differingTables.watchLists();
    m_differenceWords.install();
    m_strips.build();
    m_onlyDifferences.connectGrids();
    m_gridPair.emplace(m_editor.Tabella(0), m_editor.Tabella(1));
    connect(&m_find->bar(), &FindBar::resized, this, &DtbEditor::Form_Resize);
    connect(&m_tableFilter, &TableFilter::resized, this, &DtbEditor::Form_Resize);
}

void DtbEditor::settleWithLoop() {
    MessageLoop *loop = MessageLoop::instance();
    if (!loop)
        return;
    loop->setWindow(this);
    loop->setErrorTitle(applicationTitle());
    loop->addSettling([this] { m_tables.settlePanes(); });
    loop->addSettling([this] { m_onlyDifferences.follow(); });
    loop->addSettling([this] { m_tableFilter.follow(); });
    loop->addSettling([this] { m_find->follow(); });
    loop->addSettling([this] { m_undo.follow(); });
    loop->addSettling([this] { commandEnded(); });
    loop->addSettling([this] { m_keyed.settle(); });
    loop->addSettling([this] { m_conflicts.settle(); });
    loop->addSettling([this] { m_notices.show(); });
    loop->addSettling([this] { m_changes.settle(); });
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

StartResult DtbEditor::openRight(const QString &fileName) {
    showTwoPanes();
    return m_open.openRight(fileName);
}

void DtbEditor::askForBoth() {
    showTwoPanes();
    for (const int pane : {0, 1}) {
        if (m_editor.DtbAperto(pane))
            continue;
        activatePane(m_editor, pane);
        m_open.OpenDatabase_Click();
        if (!m_editor.DtbAperto(pane))
            break;
    }
    activatePane(m_editor, 0);
    if (m_editor.DtbAperto(0))
        m_editor.ListaTabelle(0).setFocus();
}

ChangeActions DtbEditor::changeActions() {
    return {.reload = [this](int pane, const QString &name) { return m_open.reload(pane, name); },
            .openBeside = [this](int pane, const QString &path) { openBeside(pane, path); },
            .layOutAnew = [this] { layOutAnew(); }};
}

FileOpening DtbEditor::fileOpening() {
    return {.openFile = [this](int pane, const QString &path) { return m_open.openFile(pane, path); },
            .showTwoPanes = [this] { showTwoPanes(); }};
}

KeptVersions::Opening DtbEditor::keptOpening() {
    return {.openFile = [this](int pane, const QString &path) { m_open.openFile(pane, path); },
            .openBeside = [this](int pane, const QString &path) { openBeside(pane, path); }};
}

KeyedActions DtbEditor::keyedActions() {
    return {.rememberedKey = [this](const QString &table) { return m_remembered.keyFields(openPair(m_editor), table); },
            .rememberKey =
                [this](const QString &table, const QStringList &key) {
                    m_remembered.noteKeyFields(openPair(m_editor), table, key, protectionOfPair(m_editor));
                },
            .carry = [this](const CarriedChanges &changes) { m_keyedCarry.carry(changes); },
            .report =
                [this](const QString &table, const KeyedRules &rules) {
                    ComparisonChoice choice;
                    if (!rules.key.isEmpty()) // by position else
                        choice.keys = {{table, rules.key}};
                    choice.tables = {table};
                    choice.ignore = rules.ignore;
                    choice.tolerance = rules.tolerance;
                    ReportMenu_Click(m_editor, choice);
                }};
}

void DtbEditor::showTwoPanes() {
    if (!m_editor.twoPanes())
        m_modes.TwoMenu_Click();
}

void DtbEditor::openBeside(int pane, const QString &path) {
    if (!m_open.makeWay(1 - pane, path)) // the bar's button says nothing of that database
        return;
    showTwoPanes();
    m_open.openFile(1 - pane, path);
    activatePane(m_editor, pane);
    if (!m_editor.ListaTabelle(pane).isHidden())
        m_editor.ListaTabelle(pane).setFocus();
}

void DtbEditor::connectPane(int pane) {
    m_filesAtHand.connectPane(pane);
    m_room.connectPane(pane);
    m_tables.connectPane(pane);
    m_gridEvents.connectPane(pane);
    m_cellEditor.connectPane(pane);
    m_edits.connectPane(pane);
    m_tableFilter.connectPane(pane);
    m_cellText.connectPane(pane);
    m_stored.connectPane(pane);
    m_listPopup.connectPane(pane);
    m_focus.watch(pane);
}

void DtbEditor::addCommands() {
    m_open.addCommands();
    m_save.addCommands();
    m_close.addCommands();
    addPasswordCommand(m_editor);
    addReportCommand(m_editor);
    CommandTable &commands = m_editor.commands();
    commands.add(Command::EndMenu, tr("E&xit"), [this] { EndMenu_Click(); },
                 {.shortcut = QKeySequence(Qt::CTRL | Qt::Key_Q)});
    m_undo.addCommands();
    m_modes.addCommands();
    m_keyed.addCommands();
    addColumnFit(m_editor);
    m_tableCommands.addCommands();
    m_fieldCommands.addCommands();
    m_recordCommands.addCommands();
    m_cloneCommands.addCommands();
    m_walk.addCommands();
    m_summary.addCommands();
    m_onlyDifferences.addCommands();
    m_carryCommands.addCommands();
    m_sorting.addCommands();
    m_clipboard.addCommands();
    m_filesAtHand.addCommands();
    m_colours.addCommands();
    m_toolBar.addCommands();
    m_room.addCommands();
    m_edits.addCommands();
    m_pasteAll.addCommands();
    m_find->addCommands();
    m_goTo.addCommands();
    m_kept.addCommands();
    m_conflicts.addCommands();
    addHelpCommands(m_editor);
}

void DtbEditor::commandEnded() {
    m_differingTables.follow();
    m_strips.follow();
    m_summary.follow();
    m_signs.settle();
    m_status.show();
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
    if (m_editor.controls().window == nullptr)
        return;
    // The panes' colours are taken from the desktop's scheme, which may change while the window stands; so may the
    // font, by which the menu bar's height changes too.
    if (event->type() == QEvent::PaletteChange) {
        SettaColoriIndexAttivo(m_editor);
    } else if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        layOutAnew();
    }
}

void DtbEditor::layOutAnew() {
    layout()->activate();
    RicalcolaSistemazioneForm(m_editor);
}

void DtbEditor::closeEvent(QCloseEvent *event) {
    bool released = false;
    runCommand([&] { released = m_close.Form_QueryUnload(); });
    m_notices.show(); // what the last release had to tell
    event->setAccepted(released);
    if (!released)
        return;
    rememberWindowPlace(*this, m_remembered);
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
