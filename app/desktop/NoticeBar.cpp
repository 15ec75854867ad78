#include "app/desktop/NoticeBar.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace qir {

using namespace Qt::StringLiterals;

NoticeBar::NoticeBar(QWidget *parent, int pane)
    : QFrame(parent)
    , m_text(new QLabel) {
    setObjectName(u"noticeBar_%1"_s.arg(pane));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    m_text->setObjectName(u"noticeText"_s);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_text->setForegroundRole(QPalette::ToolTipText);
    auto *buttons = new QHBoxLayout;
    // Without letters of their own, which are the menus'.
    const std::array captions{tr("Reload"), tr("Keep Mine"), tr("Compare"), tr("Dismiss")};
    const std::array names{u"reload"_s, u"keep"_s, u"compare"_s, u"dismiss"_s};
    for (std::size_t i = 0; i < m_buttons.size(); ++i) {
        m_buttons.at(i) = new QPushButton(captions.at(i));
        m_buttons.at(i)->setObjectName(names.at(i));
        m_buttons.at(i)->setAutoDefault(false);
        m_buttons.at(i)->setFocusPolicy(Qt::TabFocus); // a press of the mouse leaves the keyboard where it is
        buttons->addWidget(m_buttons.at(i));
        connect(m_buttons.at(i), &QPushButton::clicked, this, [this, i] { Q_EMIT pressed(static_cast<Button>(i)); });
    }
    m_buttons[Reload]->setToolTip(tr("Show what is on disk now, at the same table and cell."));
    m_buttons[Keep]->setToolTip(tr("Go on with what is shown; the next save writes it over the file."));
    m_buttons[Compare]->setToolTip(tr("Open what is on disk now in the other pane."));
    m_buttons[Dismiss]->setToolTip(tr("Close this line. Nothing is decided by that."));
    buttons->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setSpacing(4);
    layout->addWidget(m_text);
    layout->addLayout(buttons);
    hide();
}

void NoticeBar::tell(const QString &text, const QList<Button> &buttons) {
    m_text->setText(text);
    setAccessibleName(text);
    for (const Button button : {Reload, Keep, Compare})
        m_buttons.at(button)->setVisible(buttons.contains(button));
    show();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

QString NoticeBar::text() const {
    return m_text->text();
}

} // namespace qir
