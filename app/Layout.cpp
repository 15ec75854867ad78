#include "app/Layout.h"

#include "pane/PaneSplitter.h"
#include "platform/controls/Twips.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QProgressBar>
#include <QScrollBar>
#include <QSize>
#include <QStyle>

#include <algorithm>

namespace qir {

namespace {

// Figures of the layout, in twips.
constexpr int minimumHeight = 5000;
constexpr int minimumWidth = 3000;
constexpr int frameLeft = 50;
constexpr int windowWidthBesideFrames = 200;
constexpr int windowHeightBesideFrames = 900;
constexpr int frameWidthBesideControls = 250;
constexpr int frameHeightBesideListAndGrid = 900;
constexpr int gap = 90; // between controls, and round the progress bar
constexpr int progressBarHeight = 180;

constexpr int leastGridLines = 6;
constexpr int leastListColumns = 12; // average characters

/// Where list and grid stand in a frame, and the border between them.
struct Halves {
    QRect list;
    QRect border;
    QRect grid;
};

/// The height of a list above its grid: what the user gave it, as far as both have room.
int listHeightIn(const QGroupBox &frame, double share) {
    const int line = frame.fontMetrics().height();
    const int given = std::max(3 * line, frame.height() / 4);
    const int most = frame.height() - toPixels(frameHeightBesideListAndGrid) - leastGridLines * line;
    if (share <= 0 || most <= 3 * line)
        return given;
    return std::clamp(static_cast<int>(frame.height() * share), 3 * line, most);
}

Halves listAboveGrid(const QGroupBox &frame, const QRect &room, double share) {
    const int listHeight = listHeightIn(frame, share);
    const int gridTop = room.top() + listHeight + toPixels(gap);
    // A large font takes more than the figures leave for caption and label: the grid gives way, nothing overlaps.
    const int gridHeight = std::min(frame.height() - listHeight - toPixels(frameHeightBesideListAndGrid),
                                    frame.height() - gridTop - toPixels(gap));
    return {.list = {room.left(), room.top(), room.width(), listHeight},
            .border = {room.left(), room.top() + listHeight, room.width(), toPixels(gap)},
            .grid = {room.left(), gridTop, room.width(), std::max(0, gridHeight)}};
}

Halves listBesideGrid(const QGroupBox &frame, const QRect &room, double share) {
    const int least = leastListColumns * frame.fontMetrics().averageCharWidth();
    const double usual = 0.25;
    const int wanted = static_cast<int>(frame.width() * (share > 0 ? share : usual));
    const int listWidth = std::clamp(wanted, std::min(least, room.width() / 2), room.width() / 2);
    const int gridLeft = room.left() + listWidth + toPixels(gap);
    return {.list = {room.left(), room.top(), listWidth, room.height()},
            .border = {room.left() + listWidth, room.top(), toPixels(gap), room.height()},
            .grid = {gridLeft, room.top(), room.right() + 1 - gridLeft, room.height()}};
}

/// A filter line stands within its list, which has the same height with it and without it.
void placeList(const PaneControls &pane, const QRect &place) {
    ListBox &list = *pane.ListaTabelle;
    const int filterHeight =
        pane.filter->isHidden() ? 0 : std::min(pane.filter->sizeHint().height(), place.height() / 2);
    list.setGeometry(place);
    list.setRoomAboveLines(filterHeight);
    const int frame = list.frameWidth();
    const int barWidth = list.verticalScrollBar()->sizeHint().width(); // whether there is one now or not
    const QRect filter(place.left() + frame, place.top() + frame, std::max(0, place.width() - 2 * frame - barWidth),
                       filterHeight);
    pane.filter->setGeometry(QStyle::visualRect(list.layoutDirection(), place, filter));
    pane.filter->raise();
}

void placeInFrame(const PaneControls &pane, const PaneRoom &shares, PaneRoom::Placing placing) {
    const QSize frame = pane.IDtb->size();
    const int width = std::max(0, frame.width() - toPixels(frameWidthBesideControls));
    const int left = (frame.width() - width) / 2;
    const int captionHeight = pane.IDtb->fontMetrics().height() + 2;
    const int labelHeight = captionHeight;
    const int listTop = captionHeight + labelHeight;
    const QRect room(left, listTop, width, std::max(0, frame.height() - listTop - toPixels(gap)));
    const bool above = placing == PaneRoom::Placing::Above;
    Halves halves = (above ? listAboveGrid : listBesideGrid)(*pane.IDtb, room, shares.listShare(placing));
    for (QRect *part : {&halves.list, &halves.border, &halves.grid})
        *part = QStyle::visualRect(pane.IDtb->layoutDirection(), room, *part);

    pane.nomelab->setGeometry(left, captionHeight, width, labelHeight);
    placeList(pane, halves.list);
    pane.splitter->setOrientation(above ? Qt::Vertical : Qt::Horizontal);
    pane.splitter->setGeometry(halves.border);
    pane.Tabella->setGeometry(halves.grid);
    pane.ground->setGeometry(room);
    pane.hint->setGeometry(room);
}

} // namespace

QSize minimumWindowSize() {
    return {toPixels(minimumWidth), toPixels(minimumHeight)};
}

void RicalcolaSistemazioneForm(EditorContext &editor) {
    auto &window = static_cast<QMainWindow &>(*editor.controls().window);
    if (window.isMinimized())
        return;
    if (window.width() < minimumWindowSize().width() || window.height() < minimumWindowSize().height())
        window.resize(window.size().expandedTo(minimumWindowSize()));
    const QWidget *area = window.centralWidget();
    const bool two = editor.twoPanes();
    const int left = toPixels(frameLeft);
    const int allWidth = std::max(0, window.width() - toPixels(windowWidthBesideFrames));
    const int width = two ? allWidth / 2 : allWidth;
    // Below the frames is the place of the status line and of the progress bar. Where a large font makes the menu bar
    // higher than the figures expect, the frames give way.
    const int barHeight = toPixels(progressBarHeight);
    const int stripHeight = std::max(barHeight, area->fontMetrics().height() + 2);
    QWidget *below = editor.controls().belowFrames;
    const int room = area->height() - (below != nullptr ? below->heightForWidth(area->width()) : 0);
    const int height = std::max(
        0, std::min(window.height() - toPixels(windowHeightBesideFrames), room - stripHeight - 2 * toPixels(gap)));
    if (below != nullptr)
        below->setGeometry(0, room, area->width(), area->height() - room);

    editor.IDtb(0).setGeometry(left, 0, width, height);
    editor.IDtb(1).setGeometry(left + width, 0, width, height);
    editor.IDtb(1).setVisible(two);
    for (const int pane : {0, 1})
        placeInFrame(editor.pane(pane).controls(), editor.room(), editor.room().placingIn(window.width()));
    editor.controls().ProgressBarCompare->setGeometry(left, height + (room - height - barHeight) / 2,
                                                      two ? 2 * width : width, barHeight);
    editor.status().place({left, height + (room - height - stripHeight) / 2, two ? 2 * width : width, stripHeight});
}

} // namespace qir
