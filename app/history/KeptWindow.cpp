#include "app/history/KeptWindow.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int columns = 100; // size in characters
constexpr int lines = 18;

QString kindWords(const KeptFile &kept) {
    switch (kept.kind) {
    case KeptKind::Conflict:
        return KeptWindow::tr("Another program's version");
    case KeptKind::Rescued:
        return KeptWindow::tr("Could not be saved");
    case KeptKind::Replaced:
        return KeptWindow::tr("Replaced by a restored one");
    case KeptKind::Ended:
        break;
    }
    return KeptWindow::tr("Changes not saved");
}

QString fileWords(const KeptFile &kept) {
    return kept.of.isEmpty() ? KeptWindow::tr("A protected file") : QFileInfo(kept.of).fileName();
}

} // namespace

KeptWindow::KeptWindow(Source source, QWidget *parent)
    : QDialog(parent)
    , m_source(std::move(source))
    , m_list(new QTreeWidget(this))
    , m_none(new QLabel(tr("No versions are kept."), this)) {
    setObjectName(u"keptVersions"_s);
    setWindowTitle(tr("Kept Versions"));
    m_list->setObjectName(u"keptList"_s);
    m_list->setAccessibleName(tr("Kept versions"));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setHeaderLabels({tr("Time"), tr("File"), tr("What it is"), tr("Where it stands")});
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, [this] { choose(Choice::Open); });
    connect(m_list, &QTreeWidget::currentItemChanged, this, [this] { enable(); });

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    m_open = buttons->addButton(tr("&Open"), QDialogButtonBox::ActionRole);
    m_compare = buttons->addButton(tr("&Compare"), QDialogButtonBox::ActionRole);
    m_compare->setToolTip(tr("Opens it in the other pane, beside the file as it is now"));
    m_remove = buttons->addButton(tr("&Remove..."), QDialogButtonBox::ActionRole);
    m_open->setDefault(true);
    connect(m_open, &QPushButton::clicked, this, [this] { choose(Choice::Open); });
    connect(m_compare, &QPushButton::clicked, this, [this] { choose(Choice::Compare); });
    connect(m_remove, &QPushButton::clicked, this, &KeptWindow::removeCurrent);
    connect(new QShortcut(Qt::Key_Delete, m_list, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, this,
            &KeptWindow::removeCurrent);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *rows = new QVBoxLayout(this);
    rows->addWidget(m_list);
    rows->addWidget(m_none);
    rows->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * columns, fontMetrics().lineSpacing() * lines);
    fill();
}

void KeptWindow::fill() {
    const int line = m_list->indexOfTopLevelItem(m_list->currentItem());
    m_kept = m_source.find();
    std::ranges::reverse(m_kept);
    m_list->clear();
    for (const KeptFile &kept : m_kept) {
        const QFileInfo info(kept.path);
        auto *item = new QTreeWidgetItem(m_list, {QLocale().toString(kept.time, tr("yyyy-MM-dd HH:mm:ss")),
                                                  fileWords(kept), kindWords(kept), info.absolutePath()});
        for (int column = 0; column < m_list->columnCount(); ++column)
            item->setToolTip(column, kept.path);
    }
    for (int column = 0; column < m_list->columnCount() - 1; ++column)
        m_list->resizeColumnToContents(column);
    m_none->setVisible(m_kept.empty());
    if (!m_kept.empty())
        m_list->setCurrentItem(m_list->topLevelItem(std::clamp(line, 0, static_cast<int>(m_kept.size()) - 1)));
    enable();
}

const KeptFile *KeptWindow::current() const {
    const int line = m_list->indexOfTopLevelItem(m_list->currentItem());
    return line < 0 || line >= static_cast<int>(m_kept.size()) ? nullptr : &m_kept[static_cast<std::size_t>(line)];
}

void KeptWindow::enable() {
    const KeptFile *kept = current();
    m_open->setEnabled(kept != nullptr && m_source.canOpen(*kept));
    m_compare->setEnabled(kept != nullptr && m_source.canCompare(*kept));
    m_remove->setEnabled(kept != nullptr);
}

void KeptWindow::choose(Choice choice) {
    const KeptFile *kept = current();
    if (kept == nullptr || !(choice == Choice::Open ? m_open : m_compare)->isEnabled())
        return;
    m_choice = choice;
    m_chosen = *kept;
    accept();
}

void KeptWindow::removeCurrent() {
    const KeptFile *kept = current();
    if (kept == nullptr)
        return;
    m_source.remove(*kept, this);
    fill();
}

} // namespace qir
