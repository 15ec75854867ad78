#include "tests/monkey/Answers.h"

#include "tests/monkey/Disturbances.h"
#include "tests/support/Hands.h"
#include "tests/window/DialogScript.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

const QStringList &namesOfFiles() {
    static const QStringList names{MonkeyFiles::left,  MonkeyFiles::left,    MonkeyFiles::left,    MonkeyFiles::right,
                                   MonkeyFiles::right, MonkeyFiles::right,   MonkeyFiles::large,   MonkeyFiles::locked,
                                   u"left.ddb"_s,      u"NEW.DDB"_s,         u"OTHER"_s,           u"sub/NEW.SDB"_s,
                                   u"sub"_s,           u"missing/NEW.UDB"_s, u"con aux?.txt.idb"_s};
    return names;
}

/// What people, and nobody, would type into a box that asks for a name, a number or a password.
const QStringList &texts() {
    static const QStringList all{u"Pumps"_s,
                                 u" pumps "_s,
                                 u"Pumps ?"_s,
                                 u"Valves !"_s,
                                 u"Added"_s,
                                 u"Field"_s,
                                 u"Name"_s,
                                 u""_s,
                                 u"   "_s,
                                 u" ?"_s,
                                 u"\u00e8\u00c9\u00df"_s,
                                 u"\U0001f600"_s,
                                 QString(300, u'w'),
                                 u"1"_s,
                                 u"12"_s,
                                 u"0"_s,
                                 u"-1"_s,
                                 u"2.5"_s,
                                 u"1e9"_s,
                                 u"70000"_s,
                                 u"99999999999999999999"_s,
                                 MonkeyFiles::password,
                                 MonkeyFiles::password};
    return all;
}

} // namespace

void Answers::perform(QWidget &dialog, Numbers &numbers) const {
    if (auto *files = qobject_cast<QFileDialog *>(&dialog)) {
        chooseSomeFile(*files, numbers);
        return;
    }
    const int choice = numbers.below(100);
    if (choice < 40)
        fillIn(dialog, numbers);
    else if (choice < 85)
        pressSomeButton(dialog, numbers);
    else if (choice < 90) {
        m_tell(u"closes the dialog '%1'"_s.arg(dialog.windowTitle()));
        dialog.close();
    } else
        m_gestures.perform(dialog, numbers);
}

void Answers::chooseSomeFile(QFileDialog &dialog, Numbers &numbers) const {
    if (numbers.oneIn(4)) {
        m_tell(u"cancels the file dialog"_s);
        dialog.reject();
        return;
    }
    choose(dialog, m_folder + u'/' + numbers.oneOf(namesOfFiles()));
}

void Answers::choose(QFileDialog &dialog, const QString &path) const {
    m_tell(u"chooses the file "_s + path.mid(m_folder.size() + 1));
    auto *edit = dialog.findChild<QLineEdit *>(u"fileNameEdit"_s);
    edit->setCompleter(nullptr); // whose list would open over the button
    edit->selectAll();
    edit->insert(path);
    pressButton(dialog, dialog.acceptMode() == QFileDialog::AcceptOpen ? u"Open"_s : u"Save"_s);
}

void Answers::fillIn(QWidget &dialog, Numbers &numbers) const {
    auto *edit = dialog.findChild<QLineEdit *>();
    if (!edit) {
        pressSomeButton(dialog, numbers);
        return;
    }
    const QString text = numbers.oneOf(texts());
    m_tell(u"fills in '%1'"_s.arg(text.left(40)));
    edit->selectAll();
    edit->insert(text);
    if (!numbers.oneIn(4))
        hands::strike(dialog, Qt::Key_Return, Qt::NoModifier, u"\r"_s); // wherever the keyboard is by now
}

void Answers::pressSomeButton(QWidget &dialog, Numbers &numbers) const {
    QList<QPushButton *> buttons;
    for (auto *button : dialog.findChildren<QPushButton *>())
        if (button->isVisible())
            buttons.append(button);
    if (buttons.isEmpty()) {
        m_gestures.perform(dialog, numbers);
        return;
    }
    QPushButton *button = numbers.oneOf(buttons);
    m_tell(u"presses '%1' of '%2'"_s.arg(button->text(), dialog.windowTitle()));
    hands::click(button, Qt::LeftButton);
}

void Answers::dismiss(QWidget &dialog) const {
    for (auto *button : dialog.findChildren<QPushButton *>()) {
        const QString caption = button->text().remove(u'&');
        if (button->isVisible() && (caption == u"No" || caption == u"Cancel" || caption == u"OK")) {
            hands::click(button, Qt::LeftButton);
            return;
        }
    }
    dialog.close();
}

} // namespace qir::test
