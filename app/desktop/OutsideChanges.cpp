#include "app/desktop/OutsideChanges.h"

#include "app/desktop/OpenFiles.h"
#include "app/desktop/SameDatabase.h"
#include "app/shared/Funzioni.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QMainWindow>
#include <QToolBar>

#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

OutsideChanges::OutsideChanges(EditorContext &editor, ChangeActions actions)
    : m_editor(editor)
    , m_actions(std::move(actions)) {
    for (const int pane : {0, 1})
        connect(&watch(pane), &FileWatch::happened, this, [this, pane] { check(pane); });
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive)
            look();
    });
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
    file.mark = fileMark(FileOps::system(), path);
    const auto before = std::exchange(m_beforeLoad.at(static_cast<std::size_t>(pane)), std::nullopt);
    if (before && *before != file.mark) {
        file.mark = *before;
        file.own.state = FileContent::State::There; // but unlike any content
        watch(pane).touch();                        // whether it holds other tables is told after the command
    } else {
        file.own = fileContent(FileOps::system(), path);
    }
    file.told = file.own;
    closeBar(pane);
    Q_EMIT fileTouched(pane);
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
    file.mark = mark;
    if (found == file.told)
        return;
    runCommand([&] { tell(pane, found); });
}

void OutsideChanges::tell(int pane, const FileContent &found) {
    Followed &file = followed(pane);
    const bool back = std::exchange(file.told, found).state != FileContent::State::There;
    const QString path = watch(pane).path();
    if (found.state != FileContent::State::There) {
        bar(pane).tell(found.state == FileContent::State::Missing ? tr("'%1' is not on disk any more.").arg(path)
                                                                  : tr("'%1' cannot be read any more.").arg(path),
                       {NoticeBar::Keep});
    } else if (found == file.own || holdsTheSame(pane)) {
        file.own = found;
        if (!back) {
            closeBar(pane); // it is as it was: what stood there is settled
            return;
        }
        bar(pane).tell(tr("'%1' is back on disk as it was.").arg(path), {});
    } else {
        bar(pane).tell(back ? tr("'%1' is back on disk with other contents.").arg(path)
                            : tr("'%1' was changed by another program.").arg(path),
                       {NoticeBar::Reload, NoticeBar::Keep, NoticeBar::Compare});
    }
    showBars();
}

bool OutsideChanges::holdsTheSame(int pane) {
    if (openFileProtection(m_editor, pane) == Protection::Protected)
        return false;
    const bool same = holdsSameDatabase(m_editor.OggettoDtb(pane), followed(pane).name, openFilePath(m_editor, pane));
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
        m_editor.OggettoDtb(pane).setDtbHasChanged(true);
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
}

} // namespace qir
