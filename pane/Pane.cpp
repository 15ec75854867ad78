#include "pane/Pane.h"

#include "app/shared/utility.h"
#include "db/ChosenPlaces.h"
#include "pane/CellEdit.h"
#include "pane/ListClicks.h"
#include "pane/PaneSplitter.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <QDir>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QObject>

#include <stdexcept>

namespace qir {

void Pane::setControls(const PaneControls &controls) {
    m_controls = controls;
    m_edit.addEditor(*controls.txtEdit, *controls.Tabella);
}

void Pane::takeComponent(QirDatabase database) {
    m_open = false;
    currentTableLost();
    m_database = std::move(database);
}

void Pane::componentLoaded() {
    Q_ASSERT(!m_database.isEmpty());
    m_open = true;
}

void Pane::release() {
    m_edit.end();
    const RefillScope refill(m_clicks);
    m_line = -1;
    m_open = false;
    tableRemoved();
    m_controls.ListaTabelle->clear();
    showGrid(false);
    m_controls.Tabella->clear();
    m_database.release();
}

void Pane::showFileName(const QString &name) {
    m_controls.nomelab->setText(name);
    m_controls.nomelab->setAccessibleDescription(name);
    m_filePath =
        name.isEmpty() ? QString() : QDir::cleanPath(QFileInfo(placeOf(name).value_or(name)).absoluteFilePath());
}

void Pane::showWhetherOpen() {
    // A control that goes out of sight would give the keyboard to the next one, which may be the other pane's.
    const bool keyboardInside = m_controls.IDtb->isAncestorOf(m_controls.IDtb->window()->focusWidget());
    m_controls.ListaTabelle->setVisibleFlag(m_open);
    m_controls.nomelab->setVisible(m_open);
    m_controls.splitter->setVisible(m_open);
    m_controls.ground->setVisible(m_open);
    m_controls.hint->setVisible(!m_open);
    if (keyboardInside && !m_open)
        m_controls.hint->setFocus(Qt::OtherFocusReason);
    // An empty table stays hidden: only its load shows or hides it.
    showGrid(m_open && realTableSelected() && m_controls.Tabella->Rows() > 1);
}

QString Pane::selectedTableName() const {
    const ListBox &list = *m_controls.ListaTabelle;
    // Trimmed again: behind a marker may stand blanks that belong to the name, and the name with a marker and the one
    // without must be the same.
    return list.ListIndex() < 0 ? QString() : TogliMarcatori(list.List(list.ListIndex()).trimmed()).trimmed();
}

bool Pane::realTableSelected() const {
    const ListBox &list = *m_controls.ListaTabelle;
    return list.ListIndex() >= 0 && list.ItemData(list.ListIndex()) >= 1;
}

void Pane::lineTaken() {
    lineSettled();
    m_loadFailed = false;
}

void Pane::lineSettled() {
    m_line = m_controls.ListaTabelle->ListIndex();
}

void Pane::makeTableCurrent(const QString &name) {
    const MessageLoop *loop = MessageLoop::instance();
    Q_ASSERT(loop == nullptr || !loop->amidCommand()); // it is the current table of a command that waits
    m_current.clear();
    m_database.QIRTableRecordSource(name);
    m_current = name;
}

void Pane::makeShownTableCurrent() {
    if (m_shown.isEmpty() && realTableSelected())
        throw std::runtime_error(QObject::tr("The selected table could not be loaded.").toStdString());
    if (!m_shown.isEmpty() && m_current != m_shown)
        makeTableCurrent(m_shown);
}

bool Pane::tableLoaded() {
    const bool another = m_shown != m_current;
    m_textsUnstored = false;
    m_shown = m_current;
    m_last = m_current;
    return another;
}

bool Pane::tableHidden() {
    const bool shown = !m_shown.isEmpty();
    m_shown.clear();
    return shown;
}

void Pane::renamed() {
    if (!m_shown.isEmpty()) {
        m_shown = selectedTableName();
        m_last = m_shown;
    }
    currentTableLost();
}

void Pane::tableRemoved() {
    m_shown.clear();
    m_current.clear();
    m_last.clear();
}

void Pane::loadBrokeOff(const QString &reason) {
    m_line = -1;
    m_loadFailed = true;
    m_loadError = reason;
}

void Pane::requireWhole() const {
    if (m_loadFailed)
        throw std::runtime_error(
            QObject::tr("Table '%1' is not loaded whole: %2").arg(selectedTableName(), m_loadError).toStdString());
}

void Pane::showGrid(bool visible) {
    Grid &grid = *m_controls.Tabella;
    if (!visible && grid.Visible()) {
        m_edit.end();
        // The keyboard stays in the pane; Qt would give it to the next control, which may be the other pane's.
        if (grid.window()->focusWidget() == &grid)
            m_controls.ListaTabelle->setFocus(Qt::OtherFocusReason);
    }
    grid.setVisibleFlag(visible);
}

} // namespace qir
