#include "tests/monkey/Gestures.h"

#include "tests/support/Hands.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenuBar>
#include <QWheelEvent>

#include <array>
#include <vector>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array modifiersOfClicks{Qt::NoModifier, Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier,
                                       Qt::ControlModifier};

struct Place {
    QString name; // of what is there
    QPoint point; // in the window
};

/// How often a control is chosen, against a plain one.
int weight(const QWidget &widget) {
    if (qobject_cast<const QLineEdit *>(&widget))
        return 3;
    if (qobject_cast<const QMenuBar *>(&widget))
        return 2;
    const auto *area = qobject_cast<const QAbstractScrollArea *>(widget.parentWidget());
    if (area && area->viewport() == &widget)
        return qobject_cast<const QHeaderView *>(area) ? 3 : 8;
    return 1;
}

QString nameOf(const QWidget &widget) {
    for (const QWidget *named = &widget; named; named = named->parentWidget())
        if (!named->objectName().isEmpty() && !named->objectName().startsWith(u"qt_"))
            return named->objectName();
    return QString::fromLatin1(widget.metaObject()->className());
}

Place somewhere(QWidget &window, Numbers &numbers) {
    std::vector<QWidget *> choices;
    for (QWidget *widget : window.findChildren<QWidget *>())
        if (widget->window() == &window && widget->isVisible() &&
            QRect(widget->mapTo(&window, QPoint()), widget->size()).intersects(window.rect()))
            choices.insert(choices.end(), static_cast<std::size_t>(weight(*widget)), widget);
    QWidget &chosen = choices.empty() ? window : *numbers.oneOf(choices);
    // A control may reach beyond its window.
    const QRect seen = QRect(chosen.mapTo(&window, QPoint()), chosen.size()) & window.rect();
    return {nameOf(chosen), seen.topLeft() + QPoint(numbers.below(seen.width()), numbers.below(seen.height()))};
}

Qt::MouseButton someButton(Numbers &numbers) {
    const int number = numbers.below(10);
    return number < 7 ? Qt::LeftButton : number < 9 ? Qt::RightButton : Qt::MiddleButton;
}

QString placed(const QString &what, const Place &place) {
    return u"%1 at %2 (%3, %4)"_s.arg(what, place.name).arg(place.point.x()).arg(place.point.y());
}

QString buttonName(Qt::MouseButton button) {
    return button == Qt::LeftButton ? u"left"_s : button == Qt::RightButton ? u"right"_s : u"middle"_s;
}

struct Stroke {
    Qt::Key key;
    int weight;
};

constexpr std::array strokes{
    Stroke{Qt::Key_Down, 8},   Stroke{Qt::Key_Up, 6},      Stroke{Qt::Key_Left, 5},      Stroke{Qt::Key_Right, 6},
    Stroke{Qt::Key_Home, 3},   Stroke{Qt::Key_End, 3},     Stroke{Qt::Key_PageUp, 2},    Stroke{Qt::Key_PageDown, 2},
    Stroke{Qt::Key_Tab, 4},    Stroke{Qt::Key_Backtab, 2}, Stroke{Qt::Key_Return, 8},    Stroke{Qt::Key_Enter, 1},
    Stroke{Qt::Key_Escape, 3}, Stroke{Qt::Key_Delete, 3},  Stroke{Qt::Key_Backspace, 4}, Stroke{Qt::Key_Insert, 3},
    Stroke{Qt::Key_Space, 2},  Stroke{Qt::Key_Menu, 3},    Stroke{Qt::Key_F1, 1},        Stroke{Qt::Key_F2, 2},
    Stroke{Qt::Key_F3, 2},     Stroke{Qt::Key_F5, 2},      Stroke{Qt::Key_F6, 2},        Stroke{Qt::Key_F7, 2},
    Stroke{Qt::Key_F8, 4},     Stroke{Qt::Key_F10, 1},     Stroke{Qt::Key_Alt, 1}};

/// What a key types.
QString textOf(Qt::Key key) {
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return u"\r"_s;
    case Qt::Key_Space:
        return u" "_s;
    case Qt::Key_Backspace:
        return u"\b"_s;
    case Qt::Key_Delete:
        return u"\x7f"_s;
    case Qt::Key_Escape:
        return u"\x1b"_s;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return u"\t"_s;
    default:
        return {};
    }
}

Qt::Key someKey(Numbers &numbers) {
    int weights = 0;
    for (const Stroke &stroke : strokes)
        weights += stroke.weight;
    int left = numbers.below(weights);
    for (const Stroke &stroke : strokes) {
        left -= stroke.weight;
        if (left < 0)
            return stroke.key;
    }
    return Qt::Key_Down;
}

} // namespace

void Gestures::perform(QWidget &window, Numbers &numbers) const {
    const int choice = numbers.below(100);
    if (choice < 40)
        click(window, numbers);
    else if (choice < 47)
        drag(window, numbers);
    else if (choice < 51)
        turnWheel(window, numbers);
    else if (choice < 75)
        press(window, numbers);
    else if (choice < 90)
        type(window, numbers);
    else
        pressShortcut(window, numbers);
}

void Gestures::click(QWidget &window, Numbers &numbers) const {
    const Place place = somewhere(window, numbers);
    hands::Mouse mouse(window, someButton(numbers), numbers.oneOf(modifiersOfClicks));
    const bool twice = numbers.oneIn(6);
    m_tell(placed(buttonName(mouse.button()) + (twice ? u" double click"_s : u" click"_s), place));
    if (twice)
        mouse.doubleClick(place.point);
    else
        mouse.click(place.point);
}

void Gestures::drag(QWidget &window, Numbers &numbers) const {
    const Place from = somewhere(window, numbers);
    hands::Mouse mouse(window, numbers.oneIn(8) ? Qt::RightButton : Qt::LeftButton, Qt::NoModifier);
    m_tell(placed(u"drag"_s, from));
    QPoint point = from.point;
    mouse.press(point);
    for (int moves = numbers.between(1, 4); moves > 0; --moves) {
        point += QPoint(numbers.between(-120, 120), numbers.between(-90, 90));
        mouse.move(point);
    }
    mouse.release(point);
}

void Gestures::turnWheel(QWidget &window, Numbers &numbers) const {
    const Place place = somewhere(window, numbers);
    const QPoint angle(numbers.oneIn(4) ? numbers.between(-360, 360) : 0, 120 * numbers.between(-3, 3));
    m_tell(placed(u"wheel"_s, place));
    QWidget *receiver = window.childAt(place.point);
    if (!receiver)
        receiver = &window;
    QWheelEvent event(receiver->mapFrom(&window, place.point), window.mapToGlobal(place.point), QPoint(), angle,
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(receiver, &event);
}

void Gestures::press(QWidget &window, Numbers &numbers) const {
    const Qt::Key key = someKey(numbers);
    const Qt::KeyboardModifiers modifiers = (numbers.oneIn(4) ? Qt::ShiftModifier : Qt::NoModifier) |
                                            (numbers.oneIn(6) ? Qt::ControlModifier : Qt::NoModifier);
    m_tell(u"key "_s + QKeySequence(key | modifiers).toString());
    hands::strike(window, key, modifiers, textOf(key));
}

void Gestures::type(QWidget &window, Numbers &numbers) const {
    constexpr QLatin1StringView keys("0123456789.-+eE, abzAZx?!");
    const QChar key = keys[numbers.below(static_cast<int>(keys.size()))];
    m_tell(u"types '%1'"_s.arg(key));
    hands::strike(window, static_cast<Qt::Key>(key.toUpper().unicode()),
                  key.isUpper() ? Qt::ShiftModifier : Qt::NoModifier, key);
}

void Gestures::pressShortcut(QWidget &window, Numbers &numbers) const {
    // Alt and a key that moves walks over the differences, or carries cells across.
    constexpr std::array moves{Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End, Qt::Key_Left, Qt::Key_Right};
    const bool walks = numbers.oneIn(4);
    const auto key = walks ? numbers.oneOf(moves) : static_cast<Qt::Key>(Qt::Key_A + numbers.below(26));
    Qt::KeyboardModifiers modifiers = walks || numbers.oneIn(3) ? Qt::AltModifier : Qt::ControlModifier;
    if (walks && numbers.oneIn(3))
        modifiers |= Qt::ControlModifier;
    m_tell(u"key "_s + QKeySequence(key | modifiers.toInt()).toString());
    hands::strike(window, key, modifiers, QString());
}

} // namespace qir::test
