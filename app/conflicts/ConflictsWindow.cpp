#include "app/conflicts/ConflictsWindow.h"

#include "platform/controls/RowsView.h"
#include "platform/loop/MessageLoop.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>

#include <algorithm>
#include <numeric>

namespace qir {

using namespace Qt::StringLiterals;

ConflictsWindow::ConflictsWindow(QWidget *parent)
    : QDialog(parent)
    , m_file(new QLabel)
    , m_view(new QTableView)
    , m_status(new QLabel) {
    setObjectName(u"mergeConflicts"_s);
    setWindowTitle(tr("Merge Conflicts"));
    m_file->setObjectName(u"conflictFile"_s);
    m_status->setObjectName(u"conflictStatus"_s);
    for (QLabel *label : {m_file, m_status}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    m_view->setObjectName(u"conflictList"_s);
    makeRowsView(*m_view, tr("Conflicts"));
    m_view->setModel(&m_list);
    m_view->setTextElideMode(Qt::ElideRight);
    onRowChosen(*m_view, [this](const QModelIndex &row) { runCommand([&] { Q_EMIT placeChosen(row.row()); }); });
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this, &ConflictsWindow::enable);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_file);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_status);
    layout->addWidget(buildButtons());
    constexpr int columns = 110; // size in characters
    constexpr int lines = 20;
    resize(fontMetrics().averageCharWidth() * columns, fontMetrics().lineSpacing() * lines);
    enable();
}

QPushButton *ConflictsWindow::addButton(const QString &caption, const std::function<void()> &pressed) {
    auto *button = new QPushButton(caption);
    button->setAutoDefault(false); // never the one that Return in the list presses
    connect(button, &QPushButton::clicked, this, [pressed] { runCommand(pressed); });
    return button;
}

QWidget *ConflictsWindow::buildButtons() {
    using Choice = ConflictList::Choice;
    m_ofSelected = {addButton(tr("Take &Ours"), [this] { choose(Choice::Ours); }),
                    addButton(tr("Take &Theirs"), [this] { choose(Choice::Theirs); }),
                    addButton(tr("Leave as It &Is"), [this] { choose(Choice::AsItIs); })};
    m_ofSelected[0]->setObjectName(u"conflictOurs"_s);
    m_ofSelected[1]->setObjectName(u"conflictTheirs"_s);
    m_ofSelected[2]->setObjectName(u"conflictAsItIs"_s);
    m_ofSelected[2]->setToolTip(tr("It was decided by hand: what stands there now is right"));
    QPushButton *allOurs = addButton(tr("&All Ours"), [this] { chooseAll(Choice::Ours); });
    allOurs->setObjectName(u"conflictAllOurs"_s);
    QPushButton *allTheirs = addButton(tr("A&ll Theirs"), [this] { chooseAll(Choice::Theirs); });
    allTheirs->setObjectName(u"conflictAllTheirs"_s);
    m_remove = addButton(tr("&Remove the List..."), [this] { Q_EMIT removeAsked(); });
    m_remove->setObjectName(u"conflictRemove"_s);
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    for (QPushButton *button : m_ofSelected)
        layout->addWidget(button);
    layout->addStretch(1);
    for (QPushButton *button : {allOurs, allTheirs, m_remove})
        layout->addWidget(button);
    return row;
}

void ConflictsWindow::setFile(const QString &file) {
    m_file->setText(file);
    m_view->resizeColumnsToContents();
    for (int column = 0; column < ConflictList::State; ++column) // long texts must not push the others out
        m_view->setColumnWidth(column, std::min(m_view->columnWidth(column), width() / ConflictList::ColumnCount));
    if (m_list.rowCount() > 0)
        m_view->selectRow(0);
    tell();
}

void ConflictsWindow::tell(const QString &outcome) {
    const int resolved = m_list.resolvedCount();
    const QString count = tr("%1 of %2 conflicts are resolved.").arg(resolved).arg(m_list.rowCount());
    m_status->setText(outcome.isEmpty() ? count : outcome + u' ' + count);
    m_remove->setEnabled(m_list.rowCount() > 0 && resolved == m_list.rowCount());
}

void ConflictsWindow::choose(ConflictList::Choice choice) {
    std::vector<int> rows;
    for (const QModelIndex &row : m_view->selectionModel()->selectedRows())
        rows.push_back(row.row());
    std::ranges::sort(rows);
    if (!rows.empty())
        Q_EMIT sideChosen(rows, choice, false);
}

void ConflictsWindow::chooseAll(ConflictList::Choice choice) {
    std::vector<int> rows(static_cast<std::size_t>(m_list.rowCount()));
    std::iota(rows.begin(), rows.end(), 0);
    std::erase_if(rows, [this](int row) { return m_list.isResolved(row); });
    if (!rows.empty())
        Q_EMIT sideChosen(rows, choice, true);
}

void ConflictsWindow::enable() {
    const bool any = m_view->selectionModel()->hasSelection();
    for (QPushButton *button : m_ofSelected)
        button->setEnabled(any);
}

} // namespace qir
