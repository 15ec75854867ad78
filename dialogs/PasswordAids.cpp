#include "dialogs/PasswordAids.h"

#include <QAction>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int side = 16; // of the eye, in pixels

/// An eye, struck out where the text is hidden.
QPixmap eye(const QWidget &widget, bool open) {
    const qreal ratio = widget.devicePixelRatioF();
    QPixmap picture(QSize(side, side) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = widget.palette().color(QPalette::Text);
    painter.setPen(QPen(colour, 1.3));
    QPainterPath lids;
    lids.moveTo(1.5, 8);
    lids.quadTo(8, 0.5, 14.5, 8);
    lids.quadTo(8, 15.5, 1.5, 8);
    painter.drawPath(lids);
    painter.setBrush(colour);
    painter.drawEllipse(QPointF(8, 8), 1.8, 1.8);
    if (!open)
        painter.drawLine(QPointF(3, 14), QPointF(13, 2));
    return picture;
}

/// Whether a letter came in the case that the Shift key alone does not explain.
bool tellsOfCapsLock(const QKeyEvent &event) {
    const QString text = event.text();
    if (text.size() != 1 || !text[0].isLetter() || text[0].toUpper() == text[0].toLower())
        return false;
    return text[0].isUpper() != event.modifiers().testFlag(Qt::ShiftModifier);
}

} // namespace

PasswordAids::PasswordAids(QLineEdit &box)
    : QObject(&box)
    , m_box(box)
    , m_eye(new QAction(this))
    , m_capsLock(new QLabel(tr("Caps Lock is on."))) {
    m_eye->setObjectName(u"showPassword"_s);
    m_eye->setCheckable(true);
    m_eye->setShortcut(QKeySequence(Qt::ALT | Qt::Key_S));
    m_eye->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(m_eye, &QAction::toggled, this, &PasswordAids::showText);
    box.addAction(m_eye, QLineEdit::TrailingPosition);
    m_capsLock->setObjectName(u"capsLock"_s);
    m_capsLock->setTextFormat(Qt::PlainText);
    QSizePolicy policy = m_capsLock->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_capsLock->setSizePolicy(policy);
    m_capsLock->hide();
    box.installEventFilter(this);
    showText(false);
}

void PasswordAids::showText(bool shown) {
    m_box.setEchoMode(shown ? QLineEdit::Normal : QLineEdit::Password);
    m_eye->setText(shown ? tr("Hide what is typed") : tr("Show what is typed"));
    m_eye->setToolTip(m_eye->text() + u" ("_s + m_eye->shortcut().toString(QKeySequence::NativeText) + u')');
    m_eye->setIcon(QIcon(eye(m_box, shown)));
}

bool PasswordAids::eventFilter(QObject *, QEvent *event) {
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto &key = static_cast<const QKeyEvent &>(*event);
    if (key.key() == Qt::Key_CapsLock)
        m_capsLock->hide(); // the next letter tells
    else if (!key.text().isEmpty() && key.text()[0].isLetter())
        m_capsLock->setVisible(tellsOfCapsLock(key));
    return false;
}

} // namespace qir
