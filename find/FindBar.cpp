#include "find/FindBar.h"

#include "find/HitList.h"
#include "platform/controls/RowsView.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int margin = 4;
constexpr int hitLines = 6;   // with the header
constexpr int leastShare = 3; // the bar takes at most one part of so many of the window

} // namespace

FindBar::FindBar(QWidget *parent)
    : QWidget(parent) {
    setObjectName(u"findBar"_s);
    setAccessibleName(tr("Find and replace"));
    auto *rows = new QGridLayout(this);
    rows->setContentsMargins(margin, margin, margin, margin);
    rows->setSpacing(margin);
    m_text = addText(*rows, 0, u"findText"_s, tr("Fi&nd:"), tr("Text to find"));
    m_replacement = addText(*rows, 1, u"replaceText"_s, tr("Replace w&ith:"), tr("Text to replace it with"));
    connect(addButton(*rows, 1, 2, u"replaceOne"_s, tr("Re&place")), &QAbstractButton::clicked, this,
            [this] { Q_EMIT replaceAsked(false); });
    connect(addButton(*rows, 1, 3, u"replaceAll"_s, tr("Replace &All")), &QAbstractButton::clicked, this,
            [this] { Q_EMIT replaceAsked(true); });
    connect(addButton(*rows, 0, 3, u"findClose"_s, tr("Clo&se")), &QAbstractButton::clicked, this, &FindBar::closed);
    m_count = new QLabel(this);
    m_count->setObjectName(u"findCount"_s);
    rows->addWidget(m_count, 0, 2);
    auto *boxes = new QHBoxLayout;
    rows->addLayout(boxes, 2, 0, 1, 4);
    m_case = addBox(*boxes, u"findCase"_s, tr("Match &case"));
    m_whole = addBox(*boxes, u"findWhole"_s, tr("&Whole cell"));
    m_pattern = addBox(*boxes, u"findPattern"_s, tr("Regular e&xpression"));
    m_allTables = addBox(*boxes, u"findAllTables"_s, tr("All ta&bles"));
    m_bothPanes = addBox(*boxes, u"findBothPanes"_s, tr("B&oth panes"));
    m_note = new QLabel(this);
    m_note->setObjectName(u"findNote"_s);
    m_note->setTextFormat(Qt::PlainText);
    boxes->addWidget(m_note, 1);
    m_note->setMinimumWidth(1); // a long message is cut, the bar stays as wide as the window
    m_hits = makeHits();
    rows->addWidget(m_hits, 3, 0, 1, 4);
    rows->setColumnStretch(1, 1);
    connect(m_text, &QLineEdit::textChanged, this, &FindBar::edited);
    hide();
}

QLineEdit *FindBar::addText(QGridLayout &rows, int row, const QString &objectName, const QString &caption,
                            const QString &accessibleName) {
    auto *text = new QLineEdit(this);
    text->setAcceptDrops(false); // files are dropped on panes
    text->setObjectName(objectName);
    text->setAccessibleName(accessibleName);
    auto *label = new QLabel(caption, this);
    label->setBuddy(text);
    rows.addWidget(label, row, 0);
    rows.addWidget(text, row, 1);
    return text;
}

QAbstractButton *FindBar::addBox(QLayout &row, const QString &objectName, const QString &caption) {
    auto *box = new QCheckBox(caption, this);
    box->setObjectName(objectName);
    connect(box, &QAbstractButton::toggled, this, &FindBar::edited);
    row.addWidget(box);
    return box;
}

QAbstractButton *FindBar::addButton(QGridLayout &rows, int row, int column, const QString &objectName,
                                    const QString &caption) {
    auto *button = new QPushButton(caption, this);
    button->setObjectName(objectName);
    button->setAutoDefault(false);
    rows.addWidget(button, row, column);
    return button;
}

QTableView *FindBar::makeHits() {
    auto *hits = new QTableView(this);
    hits->setObjectName(u"findHits"_s);
    makeRowsView(*hits, tr("Cells found"));
    hits->setSelectionMode(QAbstractItemView::SingleSelection);
    hits->setShowGrid(false);
    hits->hide();
    connect(hits, &QAbstractItemView::activated, this, [this](const QModelIndex &hit) { Q_EMIT chosen(hit.row()); });
    return hits;
}

SearchTerms FindBar::terms() const {
    return {m_text->text(), m_case->isChecked(), m_whole->isChecked(), m_pattern->isChecked()};
}

SearchScope FindBar::scope() const {
    return {m_allTables->isChecked(), m_bothPanes->isChecked()};
}

QString FindBar::replacement() const {
    return m_replacement->text();
}

void FindBar::setHits(QAbstractItemModel &hits) {
    m_hits->setModel(&hits);
}

void FindBar::tell(const QString &count, const QString &note) {
    m_count->setText(count);
    m_note->setText(note);
    m_note->setToolTip(note);
}

void FindBar::showHits(bool shown) {
    if (m_hits->isHidden() != shown)
        return;
    // The keyboard stays in the bar.
    if (!shown && m_hits->hasFocus())
        m_text->setFocus(Qt::OtherFocusReason);
    m_hits->setVisible(shown);
    Q_EMIT resized();
}

void FindBar::begin(bool replacing) {
    show();
    Q_EMIT resized();
    QLineEdit *text = replacing && !m_text->text().isEmpty() ? m_replacement : m_text;
    text->setFocus(Qt::ShortcutFocusReason);
    text->selectAll();
}

int FindBar::heightForWidth(int) const {
    if (isHidden())
        return 0;
    const int lines = layout()->minimumSize().height();
    if (m_hits->isHidden())
        return lines;
    const int bare = lines - m_hits->minimumSizeHint().height();
    const int wanted = hitLines * m_hits->verticalHeader()->defaultSectionSize();
    return bare + std::clamp(window()->height() / leastShare - bare, m_hits->minimumSizeHint().height(),
                             std::max(wanted, m_hits->minimumSizeHint().height()));
}

void FindBar::keyPressEvent(QKeyEvent *event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape)
        Q_EMIT escaped();
    else if (enter && (m_text->hasFocus() || m_replacement->hasFocus()))
        Q_EMIT asked(event->modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1);
    else
        QWidget::keyPressEvent(event);
}

void FindBar::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange && m_hits != nullptr) {
        m_hits->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
        Q_EMIT resized();
    }
}

} // namespace qir
