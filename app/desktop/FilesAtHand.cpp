#include "app/desktop/FilesAtHand.h"

#include "app/desktop/EmptyPane.h"
#include "app/desktop/NewDatabase.h"
#include "app/shared/Funzioni.h"
#include "pane/ActivePane.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QFontMetrics>
#include <QGroupBox>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QUrl>

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr auto dialogsKey = "fileDialogs"_L1;
constexpr auto desktopDialogs = "desktop"_L1;
constexpr auto ownDialogs = "own"_L1;
constexpr int pathColumns = 60; // of a long path in a menu, in average characters

/// A path as a menu shows it: the home folder short, the middle of a long one left out, no shortcut in it.
QString menuText(const QMenu &menu, const QString &path) {
    const QString home = QDir::homePath() + u'/';
    const QFontMetrics metrics = menu.fontMetrics();
    QString shown = path.startsWith(home) ? u"~/"_s + path.sliced(home.size()) : path;
    shown = metrics.elidedText(shown, Qt::ElideMiddle, metrics.averageCharWidth() * pathColumns);
    shown.replace(u'&', u"&&"_s);
    // By itself a path goes from left to right, whatever stands round it.
    constexpr QChar isolated(0x2066);
    constexpr QChar isolatedEnd(0x2069);
    return QGuiApplication::isRightToLeft() ? isolated + shown + isolatedEnd : shown;
}

/// The number that chooses an entry by its key: 1 to 9, then 0.
QString numbered(int entry, const QString &text) {
    return u"&%1 %2"_s.arg((entry + 1) % 10).arg(text);
}

void addNothing(QMenu &menu) {
    menu.addAction(QObject::tr("None Yet"))->setEnabled(false);
}

/// The one or two local files that are dragged; none where it is anything else.
QStringList draggedFiles(const QMimeData &data) {
    QStringList paths;
    for (const QUrl &url : data.urls()) {
        if (!url.isLocalFile() || !QFileInfo(url.toLocalFile()).isFile())
            return {};
        paths.append(url.toLocalFile());
    }
    return paths.size() <= 2 ? paths : QStringList();
}

} // namespace

void FilesAtHand::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::NewDatabase, tr("&New Database..."),
                 [this] { NewDatabase_Click(m_editor, m_remembered, [this](const QString &path) { openFile(path); }); },
                 {.shortcut = QKeySequence(Qt::CTRL | Qt::Key_N)});
    commands.add(Command::ForgetMenu, tr("&Forget..."), [this] { ForgetMenu_Click(); });
    commands.add(Command::DesktopDialogsMenu, tr("&Desktop's File Dialogs"), [this] { DesktopDialogsMenu_Click(); });
    QAction &desktops = m_editor.controls().action(Command::DesktopDialogsMenu);
    desktops.setCheckable(true);
    desktops.setChecked(m_remembered.choice(dialogsKey, desktopDialogs) != ownDialogs);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs, !desktops.isChecked());
}

void FilesAtHand::DesktopDialogsMenu_Click() {
    const bool desktops = m_editor.controls().action(Command::DesktopDialogsMenu).isChecked();
    m_remembered.setChoice(dialogsKey, desktops ? desktopDialogs : ownDialogs);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs, !desktops);
}

void FilesAtHand::addMenus() {
    QMenu &file = m_editor.controls().menu(Menu::FileMenu);
    QAction *before = &m_editor.controls().action(Command::SaveMenu);
    m_files = new QMenu(tr("&Recent Files"), &file);
    m_files->setObjectName(u"RecentFilesMenu"_s);
    m_pairs = new QMenu(tr("Recent Pa&irs"), &file);
    m_pairs->setObjectName(u"RecentPairsMenu"_s);
    for (QMenu *menu : {m_files, m_pairs}) {
        file.insertMenu(before, menu);
        menu->setToolTipsVisible(true);
    }
    connect(m_files, &QMenu::aboutToShow, this, &FilesAtHand::fillFiles);
    connect(m_pairs, &QMenu::aboutToShow, this, &FilesAtHand::fillPairs);
    fillFiles(); // a menu without entries would not open
    fillPairs();
}

void FilesAtHand::connectPane(int pane) {
    QGroupBox &frame = m_editor.IDtb(pane);
    frame.setAcceptDrops(true);
    frame.installEventFilter(this);
    new EmptyPane(m_editor, pane, {m_files, m_pairs});
}

void FilesAtHand::fillFiles() {
    m_files->clear();
    const QStringList paths = m_remembered.files();
    for (int i = 0; i < paths.size(); ++i) {
        QAction *entry = m_files->addAction(numbered(i, menuText(*m_files, paths[i])));
        entry->setToolTip(paths[i]);
        connect(entry, &QAction::triggered, this, [this, path = paths[i]] { runCommand([&] { openFile(path); }); });
    }
    if (paths.isEmpty())
        addNothing(*m_files);
    addProtectedChoice(*m_files);
}

void FilesAtHand::fillPairs() {
    m_pairs->clear();
    const QList<FilePair> pairs = m_remembered.pairs();
    for (int i = 0; i < pairs.size(); ++i) {
        const FilePair &pair = pairs[i];
        QAction *entry = m_pairs->addAction(
            numbered(i, tr("%1 and %2").arg(menuText(*m_pairs, pair.left), menuText(*m_pairs, pair.right))));
        entry->setToolTip(pair.left + u'\n' + pair.right);
        connect(entry, &QAction::triggered, this, [this, pair] { runCommand([&] { openPair(pair); }); });
    }
    if (pairs.isEmpty())
        addNothing(*m_pairs);
    addProtectedChoice(*m_pairs);
}

void FilesAtHand::addProtectedChoice(QMenu &menu) {
    menu.addSeparator();
    QAction *choice = menu.addAction(tr("&Keep Names of Protected Files"));
    choice->setObjectName(u"KeepProtectedMenu"_s);
    choice->setCheckable(true);
    choice->setChecked(m_remembered.keepsProtected());
    connect(choice, &QAction::triggered, this,
            [this](bool keeps) { runCommand([&] { tellUnlessKept(m_remembered.setKeepsProtected(keeps)); }); });
}

void FilesAtHand::openFile(const QString &path) {
    m_opening.openFile(std::max(m_editor.IndexAttivo(), 0), path);
}

void FilesAtHand::openPair(const FilePair &pair) {
    m_opening.showTwoPanes();
    if (m_opening.openFile(0, pair.left))
        m_opening.openFile(1, pair.right);
    activatePane(m_editor, 0);
    if (m_editor.DtbAperto(0))
        m_editor.ListaTabelle(0).setFocus(); // the keyboard is where the active pane is
}

void FilesAtHand::ForgetMenu_Click() {
    const QString text = tr("Forget recent files and pairs, key fields, the folder used last and the window's place?");
    if (askYesNo(m_editor.controls().window, text, u"?"_s) == Answer::Yes)
        tellUnlessKept(m_remembered.forget());
}

/// What may be confidential must not come back unsaid.
void FilesAtHand::tellUnlessKept(bool kept) {
    if (!kept)
        messageBox(
            m_editor.controls().window,
            tr("This cannot be kept: what is remembered cannot be written. It holds until the end of the program."),
            u"!"_s);
}

bool FilesAtHand::eventFilter(QObject *watched, QEvent *event) {
    for (const int pane : {0, 1}) {
        if (watched != &m_editor.IDtb(pane))
            continue;
        switch (event->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
            return takeDrop(pane, static_cast<QDropEvent &>(*event));
        default:
            return false;
        }
    }
    return false;
}

bool FilesAtHand::takeDrop(int pane, QDropEvent &event) {
    const QStringList files = draggedFiles(*event.mimeData());
    if (files.isEmpty() || !(event.possibleActions() & Qt::CopyAction)) {
        event.ignore();
        return true;
    }
    event.setDropAction(Qt::CopyAction); // whoever the files come from keeps them
    event.accept();
    if (event.type() != QEvent::Drop)
        return true;
    // Once the drag is over: a question would hold up the program that the files come from.
    QMetaObject::invokeMethod(
        this,
        [this, pane, files] {
            runCommand([&] {
                if (files.size() == 2)
                    openPair({files[0], files[1]});
                else
                    m_opening.openFile(pane, files[0]);
            });
        },
        Qt::QueuedConnection);
    return true;
}

} // namespace qir
