#include "platform/dialogs/Dialogs.h"

#include "platform/dialogs/PromptWrapping.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int noteColumns = 42; // width of a note in average characters

/// A box that only its buttons close.
class StayingBox : public QMessageBox {
public:
    using QMessageBox::QMessageBox;

    void reject() override {}

protected:
    void closeEvent(QCloseEvent *event) override { event->ignore(); }
    void keyPressEvent(QKeyEvent *event) override {
        if (event->matches(QKeySequence::Cancel))
            event->ignore();
        else
            QMessageBox::keyPressEvent(event);
    }
};

/// Beside a window's title stand its icon and its buttons.
constexpr int columnsBesideTitle = 24; // average characters

/// The width at which a window shows its whole title, where the screen has that room.
int widthOfTitle(const QWidget &window) {
    const QFontMetrics metrics = window.fontMetrics();
    QFont bold = window.font();
    bold.setBold(true); // as most window managers show it
    const int wanted =
        QFontMetrics(bold).horizontalAdvance(window.windowTitle()) + columnsBesideTitle * metrics.averageCharWidth();
    return std::min(wanted, window.screen()->availableGeometry().width() * 2 / 3);
}

void prepare(QMessageBox &box, const QString &text, const QString &title, QMessageBox::StandardButtons buttons,
             QMessageBox::StandardButton defaultButton) {
    box.setIcon(QMessageBox::NoIcon);
    box.setWindowTitle(title);
    // File names and error texts may look like markup.
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse); // to be copied into a letter
    box.setStandardButtons(buttons);
    box.setDefaultButton(defaultButton);
    if (auto *label = box.findChild<QLabel *>(u"qt_msgbox_label"_s))
        wrapLongWords(*label);
}

/// What was pressed, or `otherwise` when the box ended without one of its buttons.
Answer pressed(const QMessageBox &box, Answer otherwise) {
    switch (box.standardButton(box.clickedButton())) {
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Cancel:
        return Answer::Cancel;
    default:
        return otherwise;
    }
}

/// Below the prompt of an input box whose controls are there.
void addNote(QInputDialog &dialog, const QString &note) {
    auto *layout = qobject_cast<QBoxLayout *>(dialog.layout());
    if (note.isEmpty() || layout == nullptr)
        return;
    auto *label = new QLabel;
    label->setObjectName(u"note"_s);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setText(note);
    label->setMinimumWidth(label->fontMetrics().averageCharWidth() * noteColumns);
    layout->insertWidget(1, label);
}

} // namespace

void messageBox(QWidget *parent, const QString &text, const QString &title, const QString &reason) {
    QMessageBox box(parent);
    prepare(box, text, title, QMessageBox::Ok, QMessageBox::Ok);
    if (!reason.isEmpty())
        box.setInformativeText(reason);
    if (auto *label = box.findChild<QLabel *>(u"qt_msgbox_informativelabel"_s)) {
        label->setTextFormat(Qt::PlainText);
        // With a second text the box itself would leave the first one less room than it takes.
        for (QLabel *part : {box.findChild<QLabel *>(u"qt_msgbox_label"_s), label})
            wrapAsWide(*part);
    }
    box.exec();
}

bool messageBoxOffering(QWidget *parent, const QString &text, const QString &title, const QString &offer) {
    QMessageBox box(parent);
    prepare(box, text, title, QMessageBox::Ok, QMessageBox::Ok);
    box.setEscapeButton(QMessageBox::Ok);
    const QAbstractButton *offered = box.addButton(offer, QMessageBox::ActionRole);
    box.exec();
    return box.clickedButton() == offered;
}

Answer askYesNo(QWidget *parent, const QString &text, const QString &title) {
    QMessageBox box(parent);
    prepare(box, text, title, QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    box.exec();
    return pressed(box, Answer::No);
}

Answer askYesNoCancel(QWidget *parent, const QString &text, const QString &title) {
    QMessageBox box(parent);
    prepare(box, text, title, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::No);
    box.exec();
    return pressed(box, Answer::Cancel);
}

Answer askUntilAnswered(QWidget *parent, const QString &text, const QString &title) {
    StayingBox box(parent);
    prepare(box, text, title, QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    box.exec();
    return pressed(box, Answer::None);
}

QString inputBox(QWidget *parent, const QString &prompt, const QString &title, const QString &defaultText,
                 const QString &note) {
    QInputDialog dialog(parent);
    dialog.setInputMode(QInputDialog::TextInput);
    dialog.setWindowTitle(title);
    dialog.setTextValue(defaultText);
    dialog.setTextEchoMode(QLineEdit::Normal);
    static_cast<void>(dialog.sizeHint()); // builds the controls
    // Names in the prompt may look like markup, or like a shortcut key where the prompt labels the text box.
    for (QLabel *label : dialog.findChildren<QLabel *>()) {
        label->setTextFormat(Qt::PlainText);
        label->setBuddy(nullptr);
    }
    dialog.setLabelText(prompt);
    for (QLabel *label : dialog.findChildren<QLabel *>())
        wrapWhenTooWide(*label);
    for (QLineEdit *box : dialog.findChildren<QLineEdit *>()) {
        box->setAccessibleName(prompt);
        box->setAccessibleDescription(note);
        box->setMinimumWidth(widthOfTitle(dialog));
    }
    addNote(dialog, note);
    return dialog.exec() == QDialog::Accepted ? dialog.textValue() : QString();
}

} // namespace qir
