#include "app/look/Room.h"

#include "pane/PaneSplitter.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <QAction>
#include <QGroupBox>
#include <QLineEdit>

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr auto stretchKey = "stretchColumn"_L1;
constexpr auto besideKey = "listBeside"_L1;
constexpr auto aboveShareKey = "listHeight"_L1;
constexpr auto besideShareKey = "listWidth"_L1;
constexpr auto yes = "yes"_L1;
constexpr auto no = "no"_L1;
constexpr double shareUnit = 10000; // kept as whole ten-thousandths

QLatin1StringView keyOf(PaneRoom::Placing placing) {
    return placing == PaneRoom::Placing::Above ? aboveShareKey : besideShareKey;
}

} // namespace

void Room::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::StretchColumnMenu, tr("&Stretch Last Column"), [this] { StretchColumnMenu_Click(); });
    commands.add(Command::ListBesideMenu, tr("&List Beside Table in Wide Windows"), [this] { ListBesideMenu_Click(); });
    for (const Command command : {Command::StretchColumnMenu, Command::ListBesideMenu})
        m_editor.controls().action(command).setCheckable(true);
    recall();
}

void Room::recall() {
    for (const PaneRoom::Placing placing : {PaneRoom::Placing::Above, PaneRoom::Placing::Beside})
        m_editor.room().setListShare(placing, m_remembered.choice(keyOf(placing), u"0"_s).toInt() / shareUnit);
    m_editor.room().setWantsBeside(m_remembered.choice(besideKey, no) == yes);
    m_editor.controls().action(Command::ListBesideMenu).setChecked(m_editor.room().wantsBeside());
    const bool stretch = m_remembered.choice(stretchKey, no) == yes;
    m_editor.controls().action(Command::StretchColumnMenu).setChecked(stretch);
    for (const int pane : {0, 1})
        m_editor.Tabella(pane).setStretchLastColumn(stretch);
}

void Room::connectPane(int pane) {
    const PaneSplitter *splitter = m_editor.pane(pane).controls().splitter;
    connect(splitter, &PaneSplitter::moved, this, [this, pane](int position) { moveBorder(pane, position); });
    connect(splitter, &PaneSplitter::putBack, this, [this] { setShare(0); });
    connect(splitter, &PaneSplitter::settled, this, [this] { runCommand([this] { noteShare(); }); });
}

void Room::StretchColumnMenu_Click() {
    const bool stretch = m_editor.controls().action(Command::StretchColumnMenu).isChecked();
    m_remembered.setChoice(stretchKey, stretch ? yes : no);
    for (const int pane : {0, 1})
        m_editor.Tabella(pane).setStretchLastColumn(stretch);
}

void Room::ListBesideMenu_Click() {
    const bool wants = m_editor.controls().action(Command::ListBesideMenu).isChecked();
    m_remembered.setChoice(besideKey, wants ? yes : no);
    m_editor.room().setWantsBeside(wants);
    m_editor.endEdit();
    m_layOutAnew();
}

PaneRoom::Placing Room::placing() const {
    return m_editor.room().placingIn(m_editor.controls().window->width());
}

void Room::setShare(double share) {
    m_editor.endEdit();
    m_editor.room().setListShare(placing(), share);
    m_layOutAnew();
}

void Room::noteShare() {
    const double share = m_editor.room().listShare(placing());
    m_remembered.setChoice(keyOf(placing()), QString::number(qRound(share * shareUnit)));
}

void Room::moveBorder(int pane, int position) {
    const PaneControls &controls = m_editor.pane(pane).controls();
    const bool above = placing() == PaneRoom::Placing::Above;
    const QRect list = controls.ListaTabelle->geometry();
    // From right to left the list stands behind the border.
    const bool behind = !above && controls.IDtb->layoutDirection() == Qt::RightToLeft;
    const int extent = behind ? list.right() + 1 - position - controls.splitter->width()
                              : position - (above ? list.top() : list.left());
    const int whole = above ? controls.IDtb->height() : controls.IDtb->width();
    if (whole > 0)
        setShare(std::max(extent, 1) / static_cast<double>(whole));
}

} // namespace qir
