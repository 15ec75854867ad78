#pragma once

#include <QDialog>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <deque>
#include <functional>

namespace qir::test {

/// Answers the dialogs that a test expects, in their order, each through its own widgets as a person would. A dialog
/// that nobody expects is noted as a failure and closed, so that a test fails instead of hanging.
class DialogScript : public QObject {
public:
    DialogScript();
    ~DialogScript() override;

    /// A message box: its text and title must be these; the button of that text (without "&") is pressed.
    void expectMessage(const QString &text, const QString &title, const QString &button);
    /// The standard input box; OK with `answer`.
    void expectInput(const QString &prompt, const QString &title, const QString &defaultText, const QString &answer);
    /// The standard input box; Cancel.
    void expectInputCancelled(const QString &prompt, const QString &title);
    /// The file dialog; `path` is typed and accepted.
    void expectFile(const QString &title, const QString &path);
    void expectFileCancelled(const QString &title);
    /// Any dialog: `answer` looks at it, closes it, and gives what is wrong with it ("" nothing).
    void expect(std::function<QString(QDialog &)> answer);

    /// Nothing is expected any more: what has been, had it come, was answered by somebody who goes now.
    void expectNoMore() { m_expected.clear(); }

    /// A window of this object name is no dialog to answer: it stays beside the editor.
    void allow(const QString &objectName) { m_allowed.append(objectName); }

    /// What went wrong so far, the dialogs that were expected and did not come included; "" when all is well.
    QString problems() const;
    int answered() const { return m_answered; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void answer(QDialog &dialog);

    std::deque<std::function<QString(QDialog &)>> m_expected;
    QStringList m_problems;
    QStringList m_allowed{QStringLiteral("Progresso")}; // comes and goes by itself
    int m_answered = 0;
};

/// The answer to a message box that names all of these: OK is pressed.
std::function<QString(QDialog &)> messageNaming(const QStringList &parts);

/// Presses a button of a dialog with the mouse. Gives what is wrong ("" nothing).
QString pressButton(QDialog &dialog, const QString &text);

} // namespace qir::test
