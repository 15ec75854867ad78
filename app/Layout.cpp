#include "app/Layout.h"

#include "platform/controls/Grid.h"
#include "platform/controls/ListBox.h"
#include "platform/controls/Twips.h"

#include <QGroupBox>
#include <QLabel>
#include <QMainWindow>
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
constexpr int progressBarRoom = 280; // between list and grid: a gap, the bar, a gap

void placeInFrame(const PaneControls &pane) {
    const QSize frame = pane.IDtb->size();
    const int width = std::max(0, frame.width() - toPixels(frameWidthBesideControls));
    const int left = (frame.width() - width) / 2;
    const int line = pane.IDtb->fontMetrics().height();
    const int captionHeight = line + 2;
    const int labelHeight = line + 2;
    const int listHeight = std::max(3 * line, frame.height() / 4);

    pane.nomelab->setGeometry(left, captionHeight, width, labelHeight);
    pane.ListaTabelle->setGeometry(left, captionHeight + labelHeight, width, listHeight);
    const int gridTop = captionHeight + labelHeight + listHeight + toPixels(progressBarRoom);
    const int wanted = frame.height() - listHeight - toPixels(frameHeightBesideListAndGrid);
    const int available = frame.height() - gridTop - left;
    // A large font takes more than the figures leave for caption and label: the grid gives way, nothing overlaps.
    pane.Tabella->setGeometry(left, gridTop, width, std::max(0, std::min(wanted, available)));
    pane.hint->setGeometry(left, captionHeight, width, std::max(0, frame.height() - 2 * captionHeight));
}

} // namespace

QSize minimumWindowSize() {
    return {toPixels(minimumWidth), toPixels(minimumHeight)};
}

void RicalcolaSistemazioneForm(EditorContext &editor) {
    const auto &window = static_cast<const QMainWindow &>(*editor.controls.window);
    if (window.isMinimized())
        return;
    const QWidget *area = window.centralWidget();
    const bool two = editor.twoPanes();
    const int left = toPixels(frameLeft);
    const int allWidth = std::max(0, window.width() - toPixels(windowWidthBesideFrames));
    const int width = two ? allWidth / 2 : allWidth;
    // The menu bar of a large font is higher than the figures expect: the frames stay inside the window.
    const int height =
        std::max(0, std::min(window.height() - toPixels(windowHeightBesideFrames), area->height() - left));

    editor.IDtb(0).setGeometry(left, 0, width, height);
    editor.IDtb(1).setGeometry(left + width, 0, width, height);
    editor.IDtb(1).setVisible(two);
    for (const PaneControls &pane : editor.controls.pane)
        placeInFrame(pane);
}

} // namespace qir
