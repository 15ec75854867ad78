#pragma once

#include "tests/monkey/Numbers.h"

#include <QString>

#include <functional>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace qir::test {

/// What hands do: mouse, wheel and keys, sent to a window as the window system sends them, so that pop-ups, modal
/// windows and shortcuts get what they would get from a person.
class Gestures {
public:
    /// Told what is about to be done, before it is done.
    using Tell = std::function<void(const QString &)>;

    explicit Gestures(Tell tell)
        : m_tell(std::move(tell)) {}

    /// A random gesture in a window, which may be gone afterwards.
    void perform(QWidget &window, Numbers &numbers) const;
    void click(QWidget &window, Numbers &numbers) const;
    void press(QWidget &window, Numbers &numbers) const;
    void type(QWidget &window, Numbers &numbers) const;

private:
    void drag(QWidget &window, Numbers &numbers) const;
    void turnWheel(QWidget &window, Numbers &numbers) const;
    void pressShortcut(QWidget &window, Numbers &numbers) const;

    Tell m_tell;
};

} // namespace qir::test
