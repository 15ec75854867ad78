#include "tests/monkey/ComparingCommands.h"

#include "pane/CommandTable.h"
#include "tests/support/Hands.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostInARow = 6;

const QList<Command> &walkingCommands() {
    static const QList<Command> all{Command::NextDifferenceMenu,       Command::NextDifferenceMenu,
                                    Command::PreviousDifferenceMenu,   Command::FirstDifferenceMenu,
                                    Command::LastDifferenceMenu,       Command::NextDifferingCellMenu,
                                    Command::PreviousDifferingCellMenu};
    return all;
}

const QList<Command> &carryingCommands() {
    static const QList<Command> all{Command::CarryCellsMenu,       Command::CarryCellsMenu,
                                    Command::CarryRecordMenu,      Command::CarryRecordMenu,
                                    Command::CarryTableMenu,       Command::OnlyDifferencesMenu,
                                    Command::OnlyDifferencesMenu,  Command::DifferencesByKeyMenu,
                                    Command::DifferencesByKeyMenu, Command::DifferencesSummaryMenu};
    return all;
}

/// What the find bar looks for, and puts in its place.
const QStringList &texts() {
    static const QStringList all{u"1"_s, u"pump"_s, u"0"_s, u"e"_s, u""_s, u"2"_s, u"a longer text"_s};
    return all;
}

/// The buttons that write, or choose what is written, as far as they can be pressed now.
QList<QAbstractButton *> writingButtons(const QWidget &window) {
    QList<QAbstractButton *> buttons;
    for (const QString &name : {u"replaceAll"_s, u"replaceOne"_s, u"keyedTickAll"_s, u"keyedCarryLeft"_s,
                                u"keyedCarryRight"_s, u"keyedAgain"_s}) {
        auto *button = window.findChild<QAbstractButton *>(name);
        if (button != nullptr && button->isVisible() && button->isEnabled())
            buttons.append(button);
    }
    return buttons;
}

void fill(const QWidget &window, const QString &name, Numbers &numbers, const Gestures::Tell &tell) {
    auto *edit = window.findChild<QLineEdit *>(name);
    if (edit == nullptr || !edit->isVisible() || !edit->isEnabled())
        return;
    const QString text = numbers.oneOf(texts());
    tell(u"fills in %1: '%2'"_s.arg(name, text));
    edit->selectAll();
    edit->insert(text);
}

void pressWriting(const QWidget &window, Numbers &numbers, const Gestures::Tell &tell) {
    for (const QString &name : {u"findText"_s, u"replaceText"_s})
        if (numbers.oneIn(2))
            fill(window, name, numbers, tell);
    const QList<QAbstractButton *> buttons = writingButtons(window);
    if (buttons.isEmpty())
        return;
    QAbstractButton *button = numbers.oneOf(buttons);
    tell(u"presses %1"_s.arg(button->objectName()));
    hands::click(button, Qt::LeftButton, {}, QPoint(8, 8));
}

} // namespace

void performComparing(QWidget &window, const CommandTable &commands, Numbers &numbers, const Gestures::Tell &tell) {
    const int choice = numbers.below(10);
    if (choice < 3) {
        pressWriting(window, numbers, tell);
        return;
    }
    const bool walks = choice < 7;
    const Command command = numbers.oneOf(walks ? walkingCommands() : carryingCommands());
    QAction &action = commands.action(command);
    for (int times = walks ? numbers.between(1, mostInARow) : 1; times > 0; --times) {
        if (!action.isEnabled() || QApplication::activeModalWidget() != nullptr)
            return;
        tell(u"chooses %1"_s.arg(action.objectName()));
        action.trigger();
    }
}

bool byKeyIsOpen(const QWidget &window) {
    const auto *dialog = window.findChild<QDialog *>(u"differencesByKey"_s);
    return dialog != nullptr && dialog->isVisible();
}

} // namespace qir::test
