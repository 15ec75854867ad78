#include "compare/keyed/KeyedWindow.h"

#include "base/UndoOnError.h"
#include "platform/controls/InvisibleSigns.h"
#include "platform/controls/RowsView.h"
#include "platform/dialogs/Clipboard.h"
#include "platform/loop/Guards.h"
#include "platform/loop/MessageLoop.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QTableView>

#include <algorithm>
#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// Thrown by a step when the user has had enough.
struct Cancelled {};

constexpr int typingPause = 200; // milliseconds

/// The kinds of rows that each line of the filter shows; none for all.
const std::vector<std::vector<KeyedChanges::Kind>> &filterKinds() {
    using Kind = KeyedChanges::Kind;
    static const std::vector<std::vector<Kind>> kinds{
        {}, {Kind::Added}, {Kind::Removed}, {Kind::Changed}, {Kind::Moved}, {Kind::Duplicate, Kind::FieldOfOneSide}};
    return kinds;
}

/// A value between tabs: one that has a tab or a line end itself stands in quotation marks, as spreadsheets read it.
QString quotedForTabs(QString value) {
    constexpr QChar mark(0x22);
    const bool plain = std::ranges::none_of(value, [](QChar each) { return each == u'\t' || isLineEnd(each); });
    if (plain && !value.startsWith(mark))
        return value;
    return mark + value.replace(mark, QString(2, mark)) + mark;
}

} // namespace

KeyedWindow::KeyedWindow(QWidget *parent)
    : QDialog(parent) {
    setObjectName(u"differencesByKey"_s);
    setWindowTitle(tr("Differences by Key"));
    build();
    connectControls();
}

void KeyedWindow::build() {
    auto *splitter = new QSplitter;
    m_content = splitter;
    m_options = new KeyedOptions;
    splitter->addWidget(m_options);
    splitter->addWidget(buildChanges());
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    m_status = new QLabel;
    m_status->setObjectName(u"keyedStatus"_s);
    m_status->setTextFormat(Qt::PlainText);
    m_status->setWordWrap(true);
    m_cancel = addButton(tr("&Stop"), [this] { m_cancelled = true; });
    m_cancel->setObjectName(u"keyedCancel"_s);
    m_again = addButton(tr("Compare &Again"), [this] { runCommand([this] { Q_EMIT againAsked(); }); });
    m_again->setObjectName(u"keyedAgain"_s);
    for (QPushButton *button : {m_cancel, m_again})
        button->hide();
    // Its coming and going must not move what a person is about to click.
    QSizePolicy kept = m_cancel->sizePolicy();
    kept.setRetainSizeWhenHidden(true);
    m_cancel->setSizePolicy(kept);
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(m_status, 1);
    bottom->addWidget(m_again);
    bottom->addWidget(m_cancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(splitter, 1);
    layout->addLayout(bottom);
    constexpr int columns = 110; // size in characters
    constexpr int lines = 26;
    resize(fontMetrics().averageCharWidth() * columns, fontMetrics().lineSpacing() * lines);
}

/// A button; never the one that Return in another control presses.
QPushButton *KeyedWindow::addButton(const QString &caption, const std::function<void()> &pressed) {
    auto *button = new QPushButton(caption);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, pressed);
    return button;
}

QWidget *KeyedWindow::buildChanges() {
    auto *side = new QWidget;
    m_search = new QLineEdit;
    m_search->setObjectName(u"keyedSearch"_s);
    m_search->setAccessibleName(tr("Search in the changes"));
    m_search->setPlaceholderText(tr("Search"));
    m_search->setClearButtonEnabled(true);
    m_kinds = new QComboBox;
    m_kinds->setObjectName(u"keyedFilter"_s);
    m_kinds->setAccessibleName(tr("Which changes are shown"));
    m_kinds->addItems({tr("All"), tr("Added"), tr("Removed"), tr("Changed"), tr("Moved"), tr("Fields and doubles")});
    m_view = new QTableView;
    m_view->setObjectName(u"keyedChanges"_s);
    makeRowsView(*m_view, tr("Changes by key"));
    m_view->setModel(&m_changes);
    constexpr int columnCharacters = 12;
    m_view->horizontalHeader()->setDefaultSectionSize(fontMetrics().averageCharWidth() * columnCharacters);
    auto *top = new QHBoxLayout;
    top->addWidget(m_search, 1);
    top->addWidget(m_kinds);
    auto *layout = new QVBoxLayout(side);
    layout->setContentsMargins({});
    layout->addLayout(top);
    layout->addWidget(m_view, 1);
    layout->addWidget(buildCarrying());
    return side;
}

QWidget *KeyedWindow::buildCarrying() {
    auto *row = new QWidget;
    m_tickAll = new QCheckBox(tr("&Tick all"));
    m_tickAll->setObjectName(u"keyedTickAll"_s);
    m_carry[0] = addButton(tr("Carry to the &Left..."), [this] { runCommand([this] { carry(0); }); });
    m_carry[0]->setObjectName(u"keyedCarryLeft"_s);
    m_carry[1] = addButton(tr("Carry to the &Right..."), [this] { runCommand([this] { carry(1); }); });
    m_carry[1]->setObjectName(u"keyedCarryRight"_s);
    m_report = addButton(tr("Re&port..."), [this] { runCommand([this] { Q_EMIT reportAsked(); }); });
    m_report->setObjectName(u"keyedReport"_s);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(m_tickAll);
    layout->addStretch(1);
    for (QWidget *button : {m_carry[0], m_carry[1], m_report})
        layout->addWidget(button);
    return row;
}

void KeyedWindow::connectControls() {
    m_typed.setSingleShot(true);
    m_typed.setInterval(typingPause);
    connect(&m_typed, &QTimer::timeout, this, [this] { runCommand([this] { filterChanges(); }); });
    connect(m_search, &QLineEdit::textChanged, &m_typed, qOverload<>(&QTimer::start));
    connect(m_kinds, &QComboBox::currentIndexChanged, this, [this] { runCommand([this] { filterChanges(); }); });
    connect(m_options, &KeyedOptions::keyChosen, this, &KeyedWindow::keyChosen);
    connect(m_options, &KeyedOptions::changed, this, [this] { runCommand([this] { compare(); }); });
    connect(&m_changes, &KeyedChanges::ticksChanged, this, &KeyedWindow::showTicks);
    connect(&m_changes, &KeyedChanges::filtered, this, &KeyedWindow::showFiltered);
    connect(m_tickAll, &QCheckBox::clicked, this, [this](bool all) { m_changes.tickShown(all); });
    onRowChosen(*m_view, [this](const QModelIndex &index) { runCommand([&] { chooseRow(index); }); });
    auto *copy = new QShortcut(QKeySequence::Copy, m_view, nullptr, nullptr, Qt::WidgetShortcut);
    connect(copy, &QShortcut::activated, this, [this] { runCommand([this] { copyRows(); }); });
}

void KeyedWindow::showTables(const QString &name, std::shared_ptr<TableSnapshot> left,
                             std::shared_ptr<TableSnapshot> right, const QStringList &key) {
    m_table = name;
    m_left = std::move(left);
    m_right = std::move(right);
    QStringList common;
    for (const FieldPair &field : commonFields(*m_left, *m_right))
        common += m_left->fieldName(field.left);
    QStringList others;
    for (const TableSnapshot *table : {m_left.get(), m_right.get()}) {
        for (int field = 1; field <= table->fields(); ++field) {
            if (!common.contains(table->fieldName(field)) && !others.contains(table->fieldName(field)))
                others += table->fieldName(field);
        }
    }
    m_options->setTable(name, common, others, key);
    m_stale = false;
    m_noneUnique = false;
    showTicks();
    if (rules().key.isEmpty()) {
        std::optional<QString> proposed;
        if (!runCancellable([&](const KeyedStep &step) { proposed = proposedKey(*m_left, *m_right, rules(), step); })) {
            m_changes.show(nullptr);
            m_status->setText(tr("Stopped. Check the fields of the key."));
            return;
        }
        m_noneUnique = !proposed;
        if (proposed)
            m_options->proposeKey(*proposed);
    }
    compare();
}

void KeyedWindow::showNothing(const QString &reason) {
    m_table.clear();
    m_left.reset();
    m_right.reset();
    m_options->clear();
    m_changes.show(nullptr);
    m_stale = false;
    m_again->hide();
    m_status->setText(reason);
}

bool KeyedWindow::readTables(const std::function<void(const KeyedStep &step)> &read) {
    const auto showUnread = [this](const QString &reason) {
        showNothing(reason);
        m_again->show();
    };
    bool wereRead = false;
    undoneOnError([&] { wereRead = runCancellable(read); }, [&] { showUnread(tr("The tables could not be read.")); });
    if (!wereRead)
        showUnread(tr("Stopped. The tables were not read."));
    return wereRead;
}

void KeyedWindow::setStale() {
    if (m_stale || m_left == nullptr)
        return;
    m_stale = true;
    m_again->show();
    showTicks();
    m_status->setText(tr("The tables have changed since they were compared."));
}

void KeyedWindow::compare() {
    if (m_left == nullptr)
        return;
    m_changes.show(nullptr);
    m_stale = false;
    const KeyedRules wanted = rules();
    const auto fields = matchFields(*m_left, *m_right, wanted);
    m_again->hide();
    if (!fields) {
        m_status->setText(!m_options->hasFields() ? tr("The tables have no field in common.")
                          : m_noneUnique
                              ? tr("No field has values that are unique on both sides. Check the fields of the key.")
                              : tr("No field of the key is checked."));
        return;
    }
    auto compared = std::make_unique<ComparedTables>();
    compared->left = m_left;
    compared->right = m_right;
    if (!runCancellable([&](const KeyedStep &step) {
            compared->difference = compareByKey(*m_left, *m_right, *fields, wanted.tolerance, step);
        })) {
        m_status->setText(tr("Stopped. Check the fields of the key."));
        return;
    }
    m_changes.show(std::move(compared));
    tellResult();
    filterChanges();
}

bool KeyedWindow::runCancellable(const std::function<void(const KeyedStep &step)> &work) {
    /// What has to be as before however the work ends.
    struct Comparing {
        explicit Comparing(KeyedWindow &itsWindow)
            : window(itsWindow)
            , attended(itsWindow)
            , disabled(itsWindow.m_content) {
            window.m_comparing = true;
            window.m_cancelled = false;
            window.m_again->hide();
            window.m_status->setText(tr("Comparing..."));
            window.m_cancel->show();
        }
        ~Comparing() {
            window.m_comparing = false;
            window.m_cancel->hide();
        }
        KeyedWindow &window;
        AttendedWindow attended;
        DisabledWidget disabled;
    };
    const Comparing comparing(*this);
    YieldTimer timer;
    try {
        work([&] {
            timer.yieldIfDue();
            if (m_cancelled)
                throw Cancelled();
        });
    } catch (const Cancelled &) {
        return false;
    }
    return true;
}

void KeyedWindow::tellResult() {
    const KeyedDifference &difference = m_changes.compared()->difference;
    const auto number = [](std::size_t count) { return QString::number(static_cast<qulonglong>(count)); };
    QString text = tr("%1 added, %2 removed, %3 changed, %4 moved.")
                       .arg(number(difference.added.size()), number(difference.removed.size()),
                            number(difference.changed.size()), number(difference.moved.size()));
    if (!difference.duplicates.empty()) {
        const DuplicateKey &key = difference.duplicates.front();
        const bool left = key.side == TableSide::Left;
        text += u' ' + (left ? tr("The key is not unique: on the left the records %1 and %2 have the same.")
                             : tr("The key is not unique: on the right the records %1 and %2 have the same."))
                           .arg(key.record)
                           .arg(key.second);
    }
    m_result = text;
    m_status->setText(m_result);
}

void KeyedWindow::filterChanges() {
    m_typed.stop();
    m_changes.filter(filterKinds()[static_cast<std::size_t>(std::max(m_kinds->currentIndex(), 0))], m_search->text());
    showFiltered();
}

/// Rows that are still to come would not be ticked with all that are shown.
void KeyedWindow::showFiltered() {
    showTicks();
    if (!m_stale && m_changes.compared() != nullptr)
        m_status->setText(m_changes.isFiltering() ? m_result + u' ' + tr("Searching...") : m_result);
}

void KeyedWindow::showTicks() {
    const bool any = m_changes.tickedCount() > 0 && !m_stale;
    for (QPushButton *button : m_carry)
        button->setEnabled(any);
    m_tickAll->setEnabled(!m_stale && m_changes.allRows() > 0 && !m_changes.isFiltering());
    if (m_changes.tickedCount() == 0)
        m_tickAll->setChecked(false);
    m_report->setEnabled(m_left != nullptr);
}

void KeyedWindow::carry(int to) {
    if (!m_stale && m_changes.tickedCount() > 0)
        Q_EMIT carryAsked(m_changes.ticked(to));
}

void KeyedWindow::chooseRow(const QModelIndex &index) {
    if (!index.isValid() || m_stale)
        return;
    Q_EMIT recordsChosen(m_changes.recordsOf(index.row()), m_changes.fieldOf(index.row()));
}

void KeyedWindow::copyRows() {
    QModelIndexList rows = m_view->selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    QString text;
    for (const QModelIndex &row : rows) {
        for (int column = 0; column < KeyedChanges::ColumnCount; ++column) {
            if (column > 0)
                text += u'\t';
            text += quotedForTabs(row.siblingAtColumn(column).data().toString());
        }
        text += u'\n';
    }
    if (!text.isEmpty())
        clipboard::setText(text);
}

void KeyedWindow::reject() {
    m_cancelled = true;
    QDialog::reject();
}

} // namespace qir
