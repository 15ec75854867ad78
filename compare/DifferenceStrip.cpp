#include "compare/DifferenceStrip.h"

#include "compare/DifferenceWalk.h"
#include "pane/ActivePane.h"
#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"

#include <QGroupBox>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int gap = 1;   // pixels beside the band
constexpr int reach = 3; // pixels round a press where a difference is meant
constexpr int least = 2; // pixels that a mark is high

} // namespace

DifferenceStrip::DifferenceStrip(EditorContext &editor, int pane)
    : QWidget(&editor.IDtb(pane))
    , m_editor(editor)
    , m_pane(pane) {
    setObjectName(u"differenceStrip_%1"_s.arg(pane));
    setAccessibleName(pane == 0 ? tr("Left differences") : tr("Right differences"));
    setCursor(Qt::PointingHandCursor);
    hide();
    Grid &grid = editor.Tabella(pane);
    grid.installEventFilter(this);
    connect(grid.verticalScrollBar(), &QScrollBar::valueChanged, this, qOverload<>(&QWidget::update));
}

int DifferenceStrip::records() const {
    return std::max(m_editor.Tabella(0).Rows(), m_editor.Tabella(1).Rows()) - 1;
}

void DifferenceStrip::follow() {
    const bool shown = m_editor.gridsShowSameTable() && m_editor.Tabella(0).Visible() && m_editor.Tabella(1).Visible();
    if (shown) {
        placeBesideGrid();
        count();
        if (frame() != m_drawnFrame)
            update(); // other records are in sight though nothing was scrolled
    }
    setVisible(shown);
}

void DifferenceStrip::placeBesideGrid() {
    const QRect grid = m_editor.Tabella(m_pane).geometry();
    const int header = m_editor.Tabella(m_pane).horizontalHeader()->height();
    // In the frame's margin, on the side of the grid's scroll bar, where no list stands.
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    const int margin = mirrored ? grid.left() : parentWidget()->width() - grid.right() - 1;
    const int left = mirrored ? 2 * gap : grid.right() + 1 + gap;
    setGeometry(left, grid.top() + header, std::max(margin - 3 * gap, 1), std::max(grid.height() - header, 1));
}

void DifferenceStrip::count() {
    const BitMatrix &different = m_editor.CelleDiverse();
    const auto lines = static_cast<std::size_t>(height());
    const auto all = static_cast<std::size_t>(std::max(records(), 1));
    std::vector<bool> marks(lines);
    std::size_t next = 0; // the first record that differs from the line's first one on
    for (std::size_t y = 0; y < lines; ++y) {
        const std::size_t first = 1 + y * all / lines;
        const std::size_t end = std::max(1 + (y + 1) * all / lines, first + 1);
        if (next < first)
            next = different.nextRow(first);
        if (next < std::min(end, different.rows()))
            std::fill_n(marks.begin() + static_cast<std::ptrdiff_t>(y), std::min<std::size_t>(least, lines - y), true);
    }
    setAccessibleDescription(tr("%1 of %2 records differ").arg(different.rowCount()).arg(records()));
    if (marks == m_marks)
        return;
    m_marks = std::move(marks);
    update();
}

/// From the first record that the grid shows to the last one, what it leaves out between them included.
qreal DifferenceStrip::recordsInView(const Grid &grid) {
    const int rowHeight = std::max(grid.verticalHeader()->defaultSectionSize(), 1);
    const qreal rows = static_cast<qreal>(grid.viewport()->height()) / rowHeight;
    if (grid.showsAll())
        return rows;
    const int bottom = grid.rowAt(grid.viewport()->height() - 1);
    const int last = grid.model()->headerData(bottom < 0 ? grid.shownRowCount() - 1 : bottom, Qt::Vertical).toInt();
    return std::max(last - grid.TopRow() + 1, 0);
}

/// Round what the grid shows.
QRectF DifferenceStrip::frame() const {
    const Grid &grid = m_editor.Tabella(m_pane);
    const qreal scale = static_cast<qreal>(height()) / std::max(records(), 1);
    const qreal top = (grid.TopRow() - 1) * scale;
    const qreal high = std::max<qreal>(scale * recordsInView(grid), 4);
    return {0.5, std::min(top, height() - 4.0) + 0.5, width() - 1.0, std::min(high, height() - top) - 1};
}

void DifferenceStrip::paintEvent(QPaintEvent *event) {
    Q_UNUSED(event)
    QPainter painter(this);
    const QPalette colours = QWidget::palette();
    painter.fillRect(rect(), colours.color(QPalette::Active, QPalette::Base));
    const int lines = static_cast<int>(m_marks.size());
    for (int y = 0; y < lines; ++y) {
        if (m_marks[static_cast<std::size_t>(y)])
            painter.fillRect(0, y, width(), 1, colours.color(QPalette::Active, QPalette::Text));
    }
    QColor view = colours.color(QPalette::Active, QPalette::Highlight);
    painter.setPen(view);
    view.setAlpha(70);
    painter.setBrush(view);
    m_drawnFrame = frame();
    painter.drawRect(m_drawnFrame);
}

int DifferenceStrip::recordAt(int y) const {
    const auto at = [this](int line) {
        return 1 + static_cast<int>(static_cast<qint64>(std::clamp(line, 0, height() - 1)) * records() / height());
    };
    const std::size_t near = m_editor.CelleDiverse().nextRow(static_cast<std::size_t>(at(y - reach)));
    return near <= static_cast<std::size_t>(at(y + reach)) ? static_cast<int>(near) : at(y);
}

void DifferenceStrip::ask(const QMouseEvent &event) {
    if (event.buttons().testFlag(Qt::LeftButton) && records() > 0)
        Q_EMIT wanted(recordAt(event.position().toPoint().y()));
}

void DifferenceStrip::mousePressEvent(QMouseEvent *event) {
    ask(*event);
}

void DifferenceStrip::mouseMoveEvent(QMouseEvent *event) {
    ask(*event);
}

bool DifferenceStrip::eventFilter(QObject *watched, QEvent *event) {
    const bool moved = event->type() == QEvent::Resize || event->type() == QEvent::Move;
    if (moved && !isHidden()) {
        placeBesideGrid();
        count();
    }
    return QWidget::eventFilter(watched, event);
}

void DifferenceStrips::build() {
    for (const int pane : {0, 1}) {
        auto *strip = new DifferenceStrip(m_editor, pane);
        m_strips[static_cast<std::size_t>(pane)] = strip;
        connect(strip, &DifferenceStrip::wanted, this, [this, pane](int row) {
            runCommand([&] {
                activatePane(m_editor, pane);
                m_walk.goToRecord(row);
            });
        });
    }
}

void DifferenceStrips::follow() {
    for (DifferenceStrip *strip : m_strips)
        strip->follow();
}

} // namespace qir
