#include "app/desktop/EmptyPane.h"

#include "pane/ActivePane.h"
#include "platform/loop/MessageLoop.h"

#include <QAction>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

namespace qir {

using namespace Qt::StringLiterals;

EmptyPane::EmptyPane(EditorContext &editor, int pane, const QList<QMenu *> &menus)
    : QWidget(&editor.IDtb(pane))
    , m_editor(editor)
    , m_pane(pane) {
    setObjectName(u"emptyPane_%1"_s.arg(pane));
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins({});
    const EditorControls &controls = editor.controls();
    for (QAction *action : {&controls.action(Command::OpenDatabase), &controls.action(Command::NewDatabase)}) {
        QPushButton *button = addButton(action->objectName(), action->text());
        layout->addWidget(button, 0, layout->count());
        connect(button, &QPushButton::clicked, action, [this, action] {
            activate();
            action->trigger();
        });
    }
    for (QMenu *menu : menus) {
        QPushButton *button = addButton(menu->objectName(), menu->title());
        layout->addWidget(button, 1, layout->count() - 2);
        connect(button, &QPushButton::pressed, this, &EmptyPane::activate); // before it shows the menu
        button->setMenu(menu);
    }
    hide();
    editor.pane(pane).controls().hint->installEventFilter(this);
}

QPushButton *EmptyPane::addButton(const QString &name, const QString &text) {
    auto *button = new QPushButton(QString(text).remove(u'&'), this);
    button->setObjectName(u"%1_%2"_s.arg(name).arg(m_pane));
    button->setAutoDefault(false);
    return button;
}

void EmptyPane::activate() {
    runCommand([this] { activatePane(m_editor, m_pane); });
}

bool EmptyPane::eventFilter(QObject *, QEvent *event) {
    switch (event->type()) {
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Paint: // after another text
        place();
        break;
    default:
        break;
    }
    return false;
}

void EmptyPane::place() {
    const PaneControls &controls = m_editor.pane(m_pane).controls();
    QLabel &hint = *controls.hint;
    const QRect ground = controls.ground->geometry();
    const QSize size = sizeHint();
    const int line = hint.fontMetrics().height();
    const int textHeight = hint.heightForWidth(ground.width()) + line;
    const QRect text(ground.left(), ground.center().y() - textHeight / 2, ground.width(), textHeight);
    const QRect offers(QPoint(ground.center().x() - size.width() / 2, text.bottom() + 1), size);
    const bool hasRoom = ground.contains(text) && ground.contains(offers);
    hint.setGeometry(hasRoom ? text : ground);
    if (hasRoom)
        setGeometry(offers);
    if (const bool shows = !hint.isHidden() && hasRoom; shows == isHidden())
        setVisible(shows);
}

} // namespace qir
