#include "app/desktop/OutsideChanges.h"

#include "app/desktop/OpenFiles.h"
#include "app/shared/Funzioni.h"
#include "db/LastSave.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QMainWindow>
#include <QToolBar>

#include <chrono>
#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// A mark by which a later look knows that it need not read the file; none where it might be fooled.
std::optional<FileMark> lasting(const FileMark &mark) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return isSettled(mark, std::chrono::nanoseconds(now).count()) ? std::optional(mark) : std::nullopt;
}

} // namespace

OutsideChanges::OutsideChanges(EditorContext &editor, ChangeActions actions)
    : m_editor(editor)
    , m_actions(std::move(actions)) {
    for (const int pane : {0, 1})
        connect(&watch(pane), &FileWatch::happened, this, [this, pane] { check(pane); });
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive)
            look();
    });
    connect(&m_mounts, &MountWatch::happened, this, &OutsideChanges::look);
}

void OutsideChanges::build(QMainWindow &window) {
    setParent(&window); // to be found there
    window.addToolBarBreak();
    m_strip = window.addToolBar(tr("Notices"));
    m_strip->setObjectName(u"noticeStrip"_s);
    m_strip->setMovable(false);
    m_strip->setContextMenuPolicy(Qt::PreventContextMenu);
    auto *bars = new QWidget;
    bars->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    auto *layout = new QHBoxLayout(bars);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    bars->setLayoutDirection(Qt::LeftToRight); // as the panes are, whatever way the language is read
    for (const int pane : {0, 1}) {
        auto *notice = new NoticeBar(bars, pane);
        m_bars.at(static_cast<std::size_t>(pane)) = notice;
        notice->setLayoutDirection(QGuiApplication::layoutDirection());
        layout->addWidget(notice, 1);
        connect(notice, &NoticeBar::pressed, this,
                [this, pane](NoticeBar::Button button) { runCommand([&] { act(pane, button); }); });
    }
    m_room = bars;
    bars->installEventFilter(this);
    m_strip->addWidget(bars);
    m_strip->hide();
}

void OutsideChanges::expectLoad(int pane) {
    m_beforeLoad.at(static_cast<std::size_t>(pane)) = fileMark(FileOps::system(), openFilePath(m_editor, pane));
}

void OutsideChanges::follow(int pane) {
    Followed &file = followed(pane);
    file = {};
    file.name = openFileName(m_editor, pane);
    const QString path = openFilePath(m_editor, pane);
    watch(pane).setPath(path); // first, so that no change behind the look is missed
    const FileMark mark = fileMark(FileOps::system(), path);
    const auto before = std::exchange(m_beforeLoad.at(static_cast<std::size_t>(pane)), std::nullopt);
    file.own = fileContent(FileOps::system(), path);
    if (isUntouched(pane, before.value_or(mark), before.has_value())) {
        file.mark = lasting(mark);
        digestTables(pane);
    } else {
        file.own = {};
        file.own.state = FileContent::State::There; // but unlike any content
        watch(pane).touch();                        // whether it holds other tables is told after the command
    }
    file.told = file.own;
    closeBar(pane);
    Q_EMIT fileTouched(pane);
}

/// Whether nobody has touched the file between its load, or save, and now.
bool OutsideChanges::isUntouched(int pane, const FileMark &known, bool isLoaded) {
    return fileMark(FileOps::system(), watch(pane).path()) == known &&
           (isLoaded || lastSaveStands(m_editor.OggettoDtb(pane)).value_or(true));
}

/// Whether what stands there is what the pane's database has written, also where the save was told as failed.
bool OutsideChanges::isOwnSave(int pane) {
    return lastSaveStands(m_editor.OggettoDtb(pane)).value_or(false);
}

void OutsideChanges::settle() {
    keepRoom();
    for (const int pane : {0, 1}) {
        if (m_editor.DtbAperto(pane) || followed(pane).name.isEmpty())
            continue;
        followed(pane) = {};
        watch(pane).setPath({});
        closeBar(pane);
    }
}

void OutsideChanges::look() {
    for (const int pane : {0, 1})
        if (!followed(pane).name.isEmpty())
            watch(pane).touch();
}

void OutsideChanges::check(int pane) {
    const MessageLoop *loop = MessageLoop::instance();
    if (loop != nullptr && loop->commandRunning()) {
        watch(pane).touch(); // what the command does to the file is its own
        return;
    }
    Followed &file = followed(pane);
    if (file.name.isEmpty() || !m_editor.DtbAperto(pane))
        return;
    watch(pane).renew();
    const FileMark mark = fileMark(FileOps::system(), watch(pane).path());
    if (mark == file.mark)
        return;
    runCommand([&] { Q_EMIT fileTouched(pane); });
    const FileContent found = fileContent(FileOps::system(), watch(pane).path());
    file.mark = lasting(mark);
    if (found == file.told)
        return;
    runCommand([&] { tell(pane, found); });
}

void OutsideChanges::tell(int pane, const FileContent &found) {
    Followed &file = followed(pane);
    const bool back = std::exchange(file.told, found).state != FileContent::State::There;
    const QString path = watch(pane).path();
    if (found.state != FileContent::State::There) {
        bar(pane).tell(found.state == FileContent::State::Missing ? tr("'%1' is not on disk any more.")
                                                                  : tr("'%1' cannot be read any more."),
                       path, {NoticeBar::Keep});
    } else if (found == file.own || isOwnSave(pane) || holdsTheSame(pane)) {
        file.own = found;
        if (!back) {
            closeBar(pane); // it is as it was: what stood there is settled
            return;
        }
        bar(pane).tell(tr("'%1' is back on disk as it was."), path, {});
    } else {
        bar(pane).tell(back ? tr("'%1' is back on disk with other contents.")
                            : tr("'%1' was changed by another program."),
                       path, {NoticeBar::Reload, NoticeBar::Keep, NoticeBar::Compare});
    }
    showBars();
}

/// So that what is on disk is known again beside changes that are not saved.
void OutsideChanges::digestTables(int pane) {
    if (openFileProtection(m_editor, pane) == Protection::Protected)
        return;
    followed(pane).tables = digestOfSaved(m_editor.OggettoDtb(pane));
    m_editor.pane(pane).currentTableLost();
}

bool OutsideChanges::holdsTheSame(int pane) {
    if (openFileProtection(m_editor, pane) == Protection::Protected)
        return false;
    const bool same = holdsSameDatabase(m_editor.OggettoDtb(pane), followed(pane).tables, followed(pane).name,
                                        openFilePath(m_editor, pane));
    m_editor.pane(pane).currentTableLost();
    return same;
}

void OutsideChanges::act(int pane, NoticeBar::Button button) {
    Followed &file = followed(pane);
    switch (button) {
    case NoticeBar::Reload:
        m_actions.reload(pane, file.name); // which follows the file anew
        return;
    case NoticeBar::Keep:
        keepMine(pane);
        file.own = file.told;
        closeBar(pane);
        Q_EMIT fileTouched(pane);
        return;
    case NoticeBar::Compare:
        m_actions.openBeside(pane, watch(pane).path());
        return;
    case NoticeBar::Dismiss:
        closeBar(pane);
        return;
    }
}

/// What is on disk gives way to the next save, which would be refused else.
void OutsideChanges::keepMine(int pane) {
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    const QString name = database.GetDatabaseFileName();
    database.SetFilePlace(name, watch(pane).path());
    database.SetDatabaseFileName(name); // where it cannot be taken now the save says so
    database.setDtbHasChanged(true);
}

void OutsideChanges::closeBar(int pane) {
    // Whoever pressed its button by the keyboard goes on in the pane.
    const QWidget *focus = QApplication::focusWidget();
    const int next = m_editor.IndexAttivo() >= 0 ? m_editor.IndexAttivo() : pane;
    if (focus != nullptr && bar(pane).isAncestorOf(focus) && m_editor.ListaTabelle(next).isVisible())
        m_editor.ListaTabelle(next).setFocus();
    bar(pane).hide();
    showBars();
}

/// Each stands above its own pane: beside a bar that is hidden stays its room.
void OutsideChanges::keepRoom() {
    for (const int pane : {0, 1}) {
        QSizePolicy policy = bar(pane).sizePolicy();
        policy.setRetainSizeWhenHidden(m_editor.twoPanes());
        bar(pane).setSizePolicy(policy);
    }
}

void OutsideChanges::showBars() {
    keepRoom();
    const bool any = !bar(0).isHidden() || !bar(1).isHidden();
    if (!any && m_strip->isHidden())
        return;
    m_strip->setVisible(any);
    m_actions.layOutAnew();
    if (fitStrip()) // at the width that it has now
        m_actions.layOutAnew();
}

/// The strip as high as its bars are at its width, which a tool bar does not ask for. True where it was not.
bool OutsideChanges::fitStrip() {
    m_room->layout()->invalidate(); // which keeps what it has reckoned while a bar was hidden
    const int height = std::max(m_room->layout()->heightForWidth(m_room->width()), 0);
    if (height == m_room->minimumHeight() && height == m_room->maximumHeight())
        return false;
    m_room->setFixedHeight(height);
    m_strip->layout()->activate(); // at once, not with the next event
    return true;
}

bool OutsideChanges::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_room && event->type() == QEvent::Resize && !m_strip->isHidden() && fitStrip())
        QMetaObject::invokeMethod(this, m_actions.layOutAnew, Qt::QueuedConnection); // once this layout is over
    return false;
}

} // namespace qir
