#include "platform/list/ListBox.h"

#include "base/Collation.h"
#include "platform/controls/DoubleLine.h"
#include "platform/controls/KeyCodes.h"
#include "platform/loop/MessageLoop.h"

#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace qir {

namespace {

/// Lines as high as a grid's rows: what marks the focus stands above and below the text, not in it. Where lines may
/// have signs, all are as high as one that has: lists side by side stay level, whatever they showed when they were laid
/// out.
class LineDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override {
        constexpr int padding = 4; // pixels beside a text's height
        QStyleOptionViewItem line(option);
        initStyleOption(&line, index);
        if (mayHaveSigns(option))
            line.features |= QStyleOptionViewItem::HasDecoration;
        return option.widget->style()
            ->sizeFromContents(QStyle::CT_ItemViewItem, &line, QSize(), option.widget)
            .grownBy({0, 0, 0, padding});
    }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        // In a window from right to left what a name ends with would go to its other end.
        if (option->direction == Qt::RightToLeft && !option->text.isRightToLeft())
            option->text = QChar(0x202a) + option->text + QChar(0x202c); // read from left to right
    }

private:
    static bool mayHaveSigns(const QStyleOptionViewItem &option) {
        const auto *list = qobject_cast<const QAbstractItemView *>(option.widget);
        return list != nullptr && list->iconSize().isValid();
    }
};

} // namespace

ListBox::ListBox(QWidget *parent, Order order)
    : QListView(parent)
    , m_lines(new ListLines(this))
    , m_order(order) {
    setModel(m_lines);
    setItemDelegate(new LineDelegate(this));
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerItem);
}

int ListBox::ListCount() const {
    return m_lines->rowCount();
}

int ListBox::ListIndex() const {
    const QItemSelection selected = selectionModel()->selection();
    return selected.isEmpty() ? -1 : selected.first().top();
}

void ListBox::setListIndex(int line) {
    if (line == ListIndex() || (line != -1 && !m_lines->has(line)))
        return;
    selectSilently(line);
    if (line == -1)
        return;
    Q_EMIT Click();
    rethrowCarried();
}

void ListBox::selectSilently(int line) {
    m_silent = true;
    if (line < 0) {
        selectionModel()->clear();
    } else {
        selectionModel()->setCurrentIndex(m_lines->index(line), QItemSelectionModel::ClearAndSelect);
        scrollTo(m_lines->index(line));
    }
    m_silent = false;
}

QString ListBox::List(int line) const {
    return m_lines->has(line) ? m_lines->text(line) : QString();
}

void ListBox::setList(int line, const QString &text) {
    if (m_lines->has(line) && m_lines->text(line) != text)
        m_lines->setText(line, text);
}

int ListBox::ItemData(int line) const {
    return m_lines->has(line) ? m_lines->number(line) : 0;
}

void ListBox::setItemData(int line, int number) {
    if (m_lines->has(line))
        m_lines->setNumber(line, number);
}

void ListBox::addItem(const QString &text) {
    insertItem(m_order == Sorted ? m_lines->sortedPlace(text) : ListCount(), text);
}

void ListBox::insertItem(int line, const QString &text) {
    m_newIndex = std::clamp(line, 0, ListCount());
    m_silent = true; // the selected line moves on, which is no selecting
    m_lines->insert(m_newIndex, text);
    m_silent = false;
}

void ListBox::clear() {
    if (m_clickDue)
        m_lostLine = List(ListIndex());
    m_silent = true;
    m_lines->clear();
    m_silent = false;
    m_newIndex = -1;
    m_clickDue = false;
}

void ListBox::setSigns(std::function<LineSign(int line)> signs) {
    const int size = fontMetrics().ascent(); // no higher than a text
    setIconSize({size, size});
    m_lines->setSigns(std::move(signs));
    viewport()->update();
}

int ListBox::TopIndex() const {
    return ListCount() == 0 ? 0 : verticalScrollBar()->value();
}

void ListBox::setTopIndex(int line) {
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(line);
}

void ListBox::setVisibleFlag(bool visible) {
    m_visible = visible;
    setVisible(visible);
}

void ListBox::mousePressEvent(QMouseEvent *event) {
    const bool right = event->button() == Qt::RightButton;
    // The left button's Click comes with its release; another button ends it here, for the release may go to a pop-up.
    if (event->button() != Qt::LeftButton)
        endClick();
    m_pressed = event->button() == Qt::LeftButton;
    m_blocked = false;
    if (m_pressed && window()->windowHandle() != nullptr)
        window()->windowHandle()->installEventFilter(this);
    m_lostLine.clear();
    QListView::mousePressEvent(event);
    event->accept();
    if (!right || indexAt(event->position().toPoint()).isValid())
        Q_EMIT MouseDown(event->button(), event->globalPosition().toPoint());
}

void ListBox::mouseReleaseEvent(QMouseEvent *event) {
    QListView::mouseReleaseEvent(event);
    event->accept();
    if (event->button() == Qt::LeftButton && std::exchange(m_pressed, false)) {
        const QModelIndex under = indexAt(event->position().toPoint());
        const QString lost = std::exchange(m_lostLine, {});
        if (!lost.isEmpty() && under.isValid() && collationKey(List(under.row())) == collationKey(lost))
            selectSilently(under.row());
        const bool moved = std::exchange(m_clickDue, false);
        if (ListIndex() >= 0 && (under.isValid() || moved))
            Q_EMIT Click();
    }
    Q_EMIT MouseUp(event->button());
}

void ListBox::endClick() {
    if (std::exchange(m_pressed, false) && std::exchange(m_clickDue, false))
        Q_EMIT Click();
}

void ListBox::focusOutEvent(QFocusEvent *event) {
    QListView::focusOutEvent(event);
    // The menu that has opened gets the button's release.
    if (m_pressed && (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::MenuBarFocusReason))
        QMetaObject::invokeMethod(this, &ListBox::endClick, Qt::QueuedConnection); // once it stands
}

bool ListBox::clickPending() const {
    return m_pressed && m_clickDue && releaseToCome();
}

void ListBox::endLostClick() {
    if (m_clickDue && !releaseToCome())
        endClick();
}

/// That of a press may have gone elsewhere, to a box that opened meanwhile; or it waits for a command to end.
bool ListBox::releaseToCome() const {
    const MessageLoop *loop = MessageLoop::instance();
    return !m_blocked && (QGuiApplication::mouseButtons().testFlag(Qt::LeftButton) || (loop && loop->inputHeld()));
}

bool ListBox::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::WindowBlocked && m_pressed)
        m_blocked = true;
    return QListView::eventFilter(watched, event);
}

void ListBox::hideEvent(QHideEvent *event) {
    QListView::hideEvent(event);
    m_pressed = m_clickDue = false; // the release goes elsewhere
}

void ListBox::paintEvent(QPaintEvent *event) {
    QListView::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(viewport());
    drawDoubleLine(painter, focusArea(), 1);
}

QRect ListBox::focusArea() const {
    const QRect all = viewport()->rect();
    const QRect line = ListIndex() < 0 ? QRect() : visualRect(m_lines->index(ListIndex())) & all;
    return line.isEmpty() ? all : line;
}

void ListBox::scrollContentsBy(int dx, int dy) {
    QListView::scrollContentsBy(dx, dy);
    if (hasFocus())
        viewport()->update(); // the line that marks the focus may stay where it is
}

void ListBox::keyPressEvent(QKeyEvent *event) {
    if (isMenuShortcut(*event)) {
        tellMenuKey();
        return;
    }
    const QScopedValueRollback byKey(m_byKey, true);
    // With no line selected a key that moves starts at the first one, not behind it.
    const bool moves = event->key() == Qt::Key_Down || event->key() == Qt::Key_Up || event->key() == Qt::Key_PageDown ||
                       event->key() == Qt::Key_PageUp || event->key() == Qt::Key_Home;
    if (moves && ListIndex() < 0 && ListCount() > 0)
        setCurrentIndex(m_lines->index(0));
    else
        QListView::keyPressEvent(event);
}

void ListBox::contextMenuEvent(QContextMenuEvent *event) {
    event->accept();
    // A press with the mouse has been told already.
    if (event->reason() == QContextMenuEvent::Keyboard)
        tellMenuKey();
}

void ListBox::tellMenuKey() {
    const QRect line = visualRect(m_lines->index(std::max(ListIndex(), 0))) & viewport()->rect();
    Q_EMIT MouseDown(Qt::RightButton, viewport()->mapToGlobal(line.bottomLeft()));
}

void ListBox::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) {
    QListView::selectionChanged(selected, deselected);
    if (hasFocus())
        viewport()->update(); // what marks the focus may have stood elsewhere than round a line
    if (m_silent || selected.isEmpty())
        return;
    if (m_pressed && !m_byKey && releaseToCome()) {
        m_clickDue = true;
        return;
    }
    m_pressed = m_clickDue = false;
    // The view shows the current line after this: who hears the Click asks what it shows.
    scrollTo(selected.indexes().first());
    Q_EMIT Click();
}

QItemSelectionModel::SelectionFlags ListBox::selectionCommand(const QModelIndex &index, const QEvent *event) const {
    Q_UNUSED(event)
    // One line is selected or none, and nothing that the user does deselects.
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

} // namespace qir
