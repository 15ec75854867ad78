#include "app/Layout.h"

#include "platform/controls/Twips.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QProgressBar>
#include <QSize>

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

void placeInFrame(const PaneControls &pane) {
    const QSize frame = pane.IDtb->size();
    const int width = std::max(0, frame.width() - toPixels(frameWidthBesideControls));
    const int left = (frame.width() - width) / 2;
    const int line = pane.IDtb->fontMetrics().height();
    const int captionHeight = line + 2;
    const int labelHeight = line + 2;
    const int listTop = captionHeight + labelHeight;
    const int listHeight = std::max(3 * line, frame.height() / 4);
    const int gridTop = listTop + listHeight + toPixels(gap);
    // A large font takes more than the figures leave for caption and label: the grid gives way, nothing overlaps.
    const int gridHeight = std::min(frame.height() - listHeight - toPixels(frameHeightBesideListAndGrid),
                                    frame.height() - gridTop - toPixels(gap));

    pane.nomelab->setGeometry(left, captionHeight, width, labelHeight);
    const int filterHeight = pane.filter->isHidden() ? 0 : std::min(pane.filter->sizeHint().height(), listHeight / 2);
    pane.filter->setGeometry(left, listTop, width, filterHeight);
    pane.ListaTabelle->setGeometry(left, listTop + filterHeight, width, listHeight - filterHeight);
    pane.Tabella->setGeometry(left, gridTop, width, std::max(0, gridHeight));
    const QRect ground(left, listTop, width, std::max(0, frame.height() - listTop - toPixels(gap)));
    pane.ground->setGeometry(ground);
    pane.hint->setGeometry(ground);
}

} // namespace

QSize minimumWindowSize() {
    return {toPixels(minimumWidth), toPixels(minimumHeight)};
}

void RicalcolaSistemazioneForm(EditorContext &editor) {
    auto &window = static_cast<QMainWindow &>(*editor.controls.window);
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
    QWidget *below = editor.controls.belowFrames;
    const int room = area->height() - (below != nullptr ? below->heightForWidth(area->width()) : 0);
    const int height = std::max(
        0, std::min(window.height() - toPixels(windowHeightBesideFrames), room - stripHeight - 2 * toPixels(gap)));
    if (below != nullptr)
        below->setGeometry(0, room, area->width(), area->height() - room);

    editor.IDtb(0).setGeometry(left, 0, width, height);
    editor.IDtb(1).setGeometry(left + width, 0, width, height);
    editor.IDtb(1).setVisible(two);
    for (const int pane : {0, 1})
        placeInFrame(editor.pane(pane).controls());
    editor.controls.ProgressBarCompare->setGeometry(left, height + (room - height - barHeight) / 2,
                                                    two ? 2 * width : width, barHeight);
    editor.status().place({left, height + (room - height - stripHeight) / 2, two ? 2 * width : width, stripHeight});
}

} // namespace qir
