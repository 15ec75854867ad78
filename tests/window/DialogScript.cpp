#include "tests/window/DialogScript.h"

#include "tests/support/Hands.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

QString plain(QString caption) {
    return caption.remove(u'&');
}

QString difference(const QString &what, const QString &actual, const QString &expected) {
    return actual == expected ? QString() : u"%1 is '%2' instead of '%3'; "_s.arg(what, actual, expected);
}

template<class Dialog>
QString withDialog(QDialog &dialog, const std::function<QString(Dialog &)> &answer) {
    if (auto *wanted = qobject_cast<Dialog *>(&dialog))
        return answer(*wanted);
    return u"a %1 instead of a %2: '%3'"_s.arg(QLatin1StringView(dialog.metaObject()->className()),
                                               QLatin1StringView(Dialog::staticMetaObject.className()),
                                               dialog.windowTitle());
}

QString answerFileDialog(QFileDialog &dialog, const QString &title, const QString &path) {
    const QString problem = difference(u"title"_s, dialog.windowTitle(), title);
    if (path.isNull()) {
        hands::key(&dialog, Qt::Key_Escape);
        return problem;
    }
    auto *edit = dialog.findChild<QLineEdit *>(u"fileNameEdit"_s);
    if (edit == nullptr)
        return u"the file dialog has no name field"_s;
    edit->setCompleter(nullptr); // whose list would open over the button
    edit->selectAll();
    edit->insert(path); // as pasted
    return problem + pressButton(dialog, dialog.acceptMode() == QFileDialog::AcceptOpen ? u"Open"_s : u"Save"_s);
}

} // namespace

QString pressButton(QDialog &dialog, const QString &text) {
    for (auto *button : dialog.findChildren<QAbstractButton *>()) {
        if (plain(button->text()) == text && button->isVisibleTo(&dialog)) {
            hands::click(button, Qt::LeftButton);
            return {};
        }
    }
    return u"no button '%1' in '%2'"_s.arg(text, dialog.windowTitle());
}

DialogScript::DialogScript() {
    qApp->installEventFilter(this);
}

DialogScript::~DialogScript() {
    qApp->removeEventFilter(this);
}

void DialogScript::expect(std::function<QString(QDialog &)> answer) {
    m_expected.push_back(std::move(answer));
}

void DialogScript::expectMessage(const QString &text, const QString &title, const QString &button) {
    expect([=](QDialog &dialog) {
        return withDialog<QMessageBox>(dialog, [=](QMessageBox &box) {
            const QString problem =
                difference(u"text"_s, box.text(), text) + difference(u"title"_s, box.windowTitle(), title);
            return problem + pressButton(box, button);
        });
    });
}

void DialogScript::expectInput(const QString &prompt, const QString &title, const QString &defaultText,
                               const QString &answer) {
    expect([=](QDialog &dialog) {
        return withDialog<QInputDialog>(dialog, [=](QInputDialog &box) {
            auto *edit = box.findChild<QLineEdit *>();
            const QString problem = difference(u"prompt"_s, box.labelText(), prompt) +
                                    difference(u"title"_s, box.windowTitle(), title) +
                                    difference(u"default"_s, edit->text(), defaultText);
            edit->selectAll();
            hands::key(edit, Qt::Key_Delete);
            hands::type(edit, answer);
            return problem + pressButton(box, u"OK"_s);
        });
    });
}

void DialogScript::expectInputCancelled(const QString &prompt, const QString &title) {
    expect([=](QDialog &dialog) {
        return withDialog<QInputDialog>(dialog, [=](QInputDialog &box) {
            const QString problem =
                difference(u"prompt"_s, box.labelText(), prompt) + difference(u"title"_s, box.windowTitle(), title);
            return problem + pressButton(box, u"Cancel"_s);
        });
    });
}

void DialogScript::expectFile(const QString &title, const QString &path) {
    expect([=](QDialog &dialog) {
        return withDialog<QFileDialog>(dialog, [=](QFileDialog &box) { return answerFileDialog(box, title, path); });
    });
}

void DialogScript::expectFileCancelled(const QString &title) {
    expectFile(title, QString());
}

QString DialogScript::problems() const {
    QStringList all = m_problems;
    if (!m_expected.empty())
        all.append(u"%1 expected dialogs did not come"_s.arg(m_expected.size()));
    return all.join(u'\n');
}

bool DialogScript::eventFilter(QObject *watched, QEvent *event) {
    auto *dialog = qobject_cast<QDialog *>(watched);
    if (dialog != nullptr && event->type() == QEvent::Show && !m_allowed.contains(dialog->objectName())) {
        // Answered once the dialog's own loop runs.
        QMetaObject::invokeMethod(
            this,
            [this, shown = QPointer<QDialog>(dialog)] {
                if (shown)
                    answer(*shown);
            },
            Qt::QueuedConnection);
    }
    return false;
}

void DialogScript::answer(QDialog &dialog) {
    const QPointer<QDialog> shown(&dialog);
    if (m_expected.empty()) {
        auto *box = qobject_cast<QMessageBox *>(&dialog);
        m_problems.append(u"unexpected dialog '%1': %2"_s.arg(dialog.windowTitle(), box ? box->text() : QString()));
        dialog.done(QDialog::Rejected);
        return;
    }
    const auto wanted = std::move(m_expected.front());
    m_expected.pop_front();
    ++m_answered;
    const QString problem = wanted(dialog);
    if (!problem.isEmpty())
        m_problems.append(problem);
    if (shown && shown->isVisible()) {
        m_problems.append(u"the dialog '%1' stayed open"_s.arg(shown->windowTitle()));
        shown->done(QDialog::Rejected);
    }
}

std::function<QString(QDialog &)> messageNaming(const QStringList &parts) {
    return [parts](QDialog &dialog) {
        const auto *box = qobject_cast<QMessageBox *>(&dialog);
        const QString text = box ? box->text() : u"no message box: "_s + dialog.windowTitle();
        QString problem;
        for (const QString &part : parts)
            if (!text.contains(part))
                problem += u"'%1' is not in '%2'; "_s.arg(part, text);
        return problem + pressButton(dialog, u"OK"_s);
    };
}

} // namespace qir::test
