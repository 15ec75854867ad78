#pragma once

#include "platform/list/ListLines.h"

#include <QListView>
#include <QString>

#include <functional>

namespace qir {

/// A list of lines, each a text with a number, of which one or none is selected. Lines count from 0.
///
/// Click is raised when the user clicks a line or selects one by key, and when ListIndex is set from code to another
/// line; nothing else raises it.
///
/// While the list has the focus a double line stands round the selected line, or round the whole visible area when that
/// line is out of sight.
class ListBox : public QListView {
    Q_OBJECT

public:
    enum Order {
        AsAdded,
        Sorted, ///< addItem() places a line by the collation key of its text, behind those of an equal key.
    };

    explicit ListBox(QWidget *parent = nullptr, Order order = AsAdded);

    int ListCount() const;
    /// The selected line, -1 when none is.
    int ListIndex() const;
    /// Another line than the selected one: selects it and raises Click. The same line: nothing. -1: deselects silently.
    /// A line that the list does not have: nothing. Scrolls the line into view.
    void setListIndex(int line);

    QString List(int line) const; ///< "" outside.
    /// Replaces a text; the line stays where it is even in a sorted list. Does nothing outside.
    void setList(int line, const QString &text);

    int ItemData(int line) const; ///< 0 outside, and for a new line.
    void setItemData(int line, int number);

    /// Adds a line at its sorted place, or at the end. The selected line stays selected; nothing is raised.
    void addItem(const QString &text);
    /// Puts a line before line `line` (0..ListCount), whatever the order; outside that range at the nearer end. The
    /// selected line stays selected; nothing is raised.
    void insertItem(int line, const QString &text);
    /// Where the last added or inserted line stands, -1 before the first and after clear().
    int NewIndex() const { return m_newIndex; }
    /// Removes all lines; deselects silently.
    void clear();

    /// True between the left button's press on a line and its release, which raises Click: the line is selected, but
    /// what a click on it does is still to come.
    bool clickPending() const;
    /// Raises the Click of a left press whose release does not come any more: a box has opened meanwhile.
    void endLostClick();

    /// A line's icon, with what it says in words.
    using LineSign = ListLines::Sign;
    /// Gives each line the icon that `signs` has for it; to be called again, or update(), when they change.
    void setSigns(std::function<LineSign(int line)> signs);

    /// Leaves so many pixels of its own area free above its lines, for a control that is laid over them.
    void setRoomAboveLines(int height) { setViewportMargins(0, height, 0, 0); }

    int TopIndex() const;       ///< The first visible line, 0 in an empty list.
    void setTopIndex(int line); ///< As far as the scroll range goes.

    bool Visible() const { return m_visible; } ///< The list's own flag, whatever its frame or window shows.
    void setVisibleFlag(bool visible);

Q_SIGNALS:
    void Click();
    /// A button that was pressed in the list went up again; raised after the Click.
    void MouseUp(Qt::MouseButton button);
    /// A button went down; the keyboard's menu key, or Shift+F10, counts as the right button. A right press on a line
    /// that is not selected has selected it (and raised Click) before this.
    void MouseDown(Qt::MouseButton button, const QPoint &globalPosition);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index, const QEvent *event) const override;

private:
    void selectSilently(int line);
    /// Raises the Click of a left press that has selected another line, without waiting for its release, which may go
    /// elsewhere.
    void endClick();
    void tellMenuKey();
    QRect focusArea() const;
    bool releaseToCome() const;

    ListLines *m_lines;
    Order m_order;
    int m_newIndex = -1;
    bool m_silent = false;   // code is changing lines or selection
    bool m_pressed = false;  // the left button went down: its release raises Click
    bool m_clickDue = false; // another line was selected since it went down
    bool m_blocked = false;  // a box has opened since it went down: the release goes nowhere or elsewhere
    bool m_byKey = false;    // a key is selecting
    QString m_lostLine;      // the one that was, when all lines were removed since; its click is still to come
    bool m_visible = true;
};

} // namespace qir
