#include "app/desktop/NoticeBar.h"

#include "platform/dialogs/PromptWrapping.h"

#include <QAccessible>
#include <QPushButton>
#include <QStyle>

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

// In pixels.
constexpr int marginAside = 8;
constexpr int marginAbove = 4;
constexpr int gap = 4;

constexpr qsizetype longestPath = 160; // characters that are shown

/// A path whose end is to be read still.
QString shownPath(const QString &path) {
    if (path.size() <= longestPath)
        return path;
    return path.left(longestPath / 3) + u'…' + path.right(longestPath - longestPath / 3);
}

} // namespace

NoticeBar::NoticeBar(QWidget *parent, int pane)
    : QFrame(parent)
    , m_text(new WrappedLabel(this)) {
    setObjectName(u"noticeBar_%1"_s.arg(pane));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    m_text->setObjectName(u"noticeText"_s);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_text->setForegroundRole(QPalette::ToolTipText);
    // Without letters of their own, which are the menus'.
    const std::array captions{tr("Reload"), tr("Keep Mine"), tr("Compare"), tr("Dismiss")};
    const std::array names{u"reload"_s, u"keep"_s, u"compare"_s, u"dismiss"_s};
    for (std::size_t i = 0; i < m_buttons.size(); ++i) {
        m_buttons.at(i) = new QPushButton(captions.at(i), this);
        m_buttons.at(i)->setObjectName(names.at(i));
        m_buttons.at(i)->setAutoDefault(false);
        m_buttons.at(i)->setFocusPolicy(Qt::TabFocus); // a press of the mouse leaves the keyboard where it is
        connect(m_buttons.at(i), &QPushButton::clicked, this, [this, i] { Q_EMIT pressed(static_cast<Button>(i)); });
    }
    m_buttons[Reload]->setToolTip(tr("Show what is on disk now, at the same table and cell."));
    m_buttons[Keep]->setToolTip(tr("Go on with what is shown; the next save writes it over the file."));
    m_buttons[Compare]->setToolTip(tr("Open what is on disk now in the other pane."));
    m_buttons[Dismiss]->setToolTip(tr("Close this line. Nothing is decided by that."));
    hide();
}

void NoticeBar::tell(const QString &text, const QString &path, const QList<Button> &buttons) {
    m_told = text.arg(path);
    m_text->setText(text.arg(shownPath(path)));
    m_text->setToolTip(path.size() > longestPath ? m_told : QString());
    setAccessibleName(m_told);
    for (const Button button : {Reload, Keep, Compare})
        m_buttons.at(button)->setVisible(buttons.contains(button));
    show();
    updateGeometry();
    resizeEvent(nullptr);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

int NoticeBar::placeButtons(int width, int top, bool move) const {
    const QRect room(marginAside, 0, std::max(1, width - 2 * marginAside), 0);
    QPoint next(room.left(), top);
    int lineHeight = 0;
    for (QPushButton *button : m_buttons) {
        if (button->isHidden())
            continue;
        const QSize wanted = button->sizeHint();
        const int buttonWidth = std::min(wanted.width(), room.width());
        if (next.x() > room.left() && next.x() + buttonWidth > room.right() + 1) {
            next = {room.left(), next.y() + lineHeight + gap};
            lineHeight = 0;
        }
        const QRect place(next, QSize(buttonWidth, wanted.height()));
        if (move)
            button->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
        lineHeight = std::max(lineHeight, wanted.height());
        next.rx() += buttonWidth + gap;
    }
    return next.y() + lineHeight - top;
}

int NoticeBar::heightForWidth(int width) const {
    if (isHidden())
        return 0;
    const int textHeight = m_text->heightForWidth(std::max(1, width - 2 * marginAside));
    return marginAbove + textHeight + gap + placeButtons(width, 0, false) + marginAbove;
}

QSize NoticeBar::sizeHint() const {
    const int width = m_text->sizeHint().width() + 2 * marginAside;
    return {width, heightForWidth(width)};
}

QSize NoticeBar::minimumSizeHint() const {
    return {0, 0};
}

void NoticeBar::resizeEvent(QResizeEvent *) {
    const int textWidth = std::max(1, width() - 2 * marginAside);
    const int textHeight = m_text->heightForWidth(textWidth);
    m_text->setGeometry(marginAside, marginAbove, textWidth, textHeight);
    placeButtons(width(), marginAbove + textHeight + gap, true);
}

} // namespace qir
