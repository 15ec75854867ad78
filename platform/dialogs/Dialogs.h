#pragma once

#include <QString>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace qir {

/// How a question ended.
enum class Answer {
    Yes,
    No,
    Cancel,
    None, ///< Only of a question that stays until it is answered: the program's event loop was ended under it.
};

/// The message boxes are QMessageBox without an icon, with exactly the given text (plain, whatever it looks like) and
/// title. `parent` may be null.

/// A message with an OK button; `reason` is its second line (the informative text), "" for none.
void messageBox(QWidget *parent, const QString &text, const QString &title, const QString &reason = {});

/// A question with Yes and No, No being the default button. Every end but the Yes button is No.
Answer askYesNo(QWidget *parent, const QString &text, const QString &title);

/// A question with Yes, No and Cancel, No being the default button. Every end but the Yes and No buttons is Cancel.
Answer askYesNoCancel(QWidget *parent, const QString &text, const QString &title);

/// A question with Yes and No, No being the default button, that stays until one of them is pressed: neither Escape
/// nor the close box answers it.
Answer askUntilAnswered(QWidget *parent, const QString &text, const QString &title);

/// A message with an OK button and one more that offers to do something about it; true when that was pressed.
bool messageBoxOffering(QWidget *parent, const QString &text, const QString &title, const QString &offer);

/// The standard input box (QInputDialog), typed text in clear. A cancel gives "". A note stands below the prompt.
QString inputBox(QWidget *parent, const QString &prompt, const QString &title, const QString &defaultText = {},
                 const QString &note = {});

} // namespace qir
