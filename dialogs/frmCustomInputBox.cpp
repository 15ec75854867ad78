#include "dialogs/frmCustomInputBox.h"

#include "base/SecretText.h"
#include "dialogs/CustomInputBox.h"
#include "dialogs/PasswordAids.h"
#include "platform/controls/Twips.h"
#include "platform/dialogs/PromptWrapping.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int multilineEnlargement = 1000; // twips
constexpr int promptColumns = 42;          // width of the prompt in average characters

} // namespace

frmCustomInputBox::frmCustomInputBox(QWidget *parent)
    : KeyPreviewDialog(parent) {
    setObjectName(u"frmCustomInputBox"_s);
    buildControls();
    previewKeysOfControls();
    Form_Load();
}

frmCustomInputBox::~frmCustomInputBox() {
    if (datiInputBox().password) {
        QString typed = Testo->text(); // shares the text box's own memory
        overwrite(typed);
    }
}

void frmCustomInputBox::buildControls() {
    Prompt = new QLabel;
    Prompt->setObjectName(u"Prompt"_s);
    Prompt->setTextFormat(Qt::PlainText);
    Prompt->setWordWrap(true);
    Prompt->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    Testo = new QLineEdit;
    Testo->setObjectName(u"Testo"_s);
    TestoMultiline = new QPlainTextEdit;
    TestoMultiline->setObjectName(u"TestoMultiline"_s);
    TestoMultiline->setTabChangesFocus(true);

    auto *buttons = new QVBoxLayout;
    const std::array captions{tr("OK"), tr("Cancel")};
    for (std::size_t i = 0; i < comandi.size(); ++i) {
        comandi.at(i) = new QPushButton(captions.at(i));
        comandi.at(i)->setObjectName(u"comandi_%1"_s.arg(i));
        comandi.at(i)->setAccessibleName(captions.at(i));
        buttons->addWidget(comandi.at(i));
    }
    buttons->addStretch();
    connect(comandi[0], &QPushButton::clicked, this, &frmCustomInputBox::confirm);
    connect(comandi[1], &QPushButton::clicked, this, &frmCustomInputBox::cancel);

    // The text boxes stand lowest, so that the taller one of several lines moves nothing else.
    auto *layout = new QGridLayout(this);
    layout->addWidget(Prompt, 0, 0);
    layout->addLayout(buttons, 0, 1);
    layout->addWidget(Testo, 1, 0, 1, 2);
    layout->addWidget(TestoMultiline, 2, 0, 1, 2);
    layout->setColumnStretch(0, 1);
    layout->setRowStretch(0, 1);
    setTabOrder(Testo, TestoMultiline);
    setTabOrder(TestoMultiline, comandi[0]);
    setTabOrder(comandi[0], comandi[1]);
}

void frmCustomInputBox::Form_Load() {
    DatiInputBox &record = datiInputBox();
    const QString prompt = withoutOuterBlanks(record.prompt.text());
    record.prompt.store(prompt);
    Prompt->setText(prompt);
    const int promptWidth = Prompt->fontMetrics().averageCharWidth() * promptColumns;
    if (Prompt->minimumSizeHint().width() > promptWidth)
        wrapWithin(*Prompt, promptWidth);
    else
        Prompt->setMinimumSize(promptWidth, Prompt->heightForWidth(promptWidth));
    const QString title = withoutOuterBlanks(record.title.text());
    record.title.store(title);
    setWindowTitle(title);
    // A screen reader says what is asked for when it reaches the text box.
    for (QWidget *box : std::initializer_list<QWidget *>{Testo, TestoMultiline})
        box->setAccessibleName(prompt.isEmpty() ? tr("Answer") : prompt);
    if (record.multiline)
        showMultiline();
    else
        showSingleLine();
}

void frmCustomInputBox::showMultiline() {
    const DatiInputBox &record = datiInputBox();
    Testo->hide();
    TestoMultiline->setFixedHeight(Testo->sizeHint().height() + toPixels(multilineEnlargement));
    TestoMultiline->setPlainText(record.defaultText.left(record.defaultLength));
    TestoMultiline->selectAll();
    TestoMultiline->setFocus();
    // Enter makes a new line here, wherever the focus is.
    for (QPushButton *button : comandi)
        button->setAutoDefault(false);
}

void frmCustomInputBox::showSingleLine() {
    const DatiInputBox &record = datiInputBox();
    TestoMultiline->hide();
    if (record.password) {
        Testo->setEchoMode(QLineEdit::Password);
        Testo->setStyleSheet(u"QLineEdit { lineedit-password-character: 42 }"_s); // "*"
        auto *aids = new PasswordAids(*Testo);
        static_cast<QGridLayout *>(layout())->addWidget(aids->capsLock(), 3, 0, 1, 2);
    }
    Testo->setText(record.defaultText.left(record.defaultLength));
    Testo->selectAll();
    Testo->setFocus();
    comandi[0]->setDefault(true);
}

bool frmCustomInputBox::Form_KeyDown(const QKeyEvent &event, const QObject *focused) {
    if (event.key() == Qt::Key_Escape) {
        cancel();
        return true;
    }
    return focused == Testo && Testo_KeyPress(event);
}

bool frmCustomInputBox::Testo_KeyPress(const QKeyEvent &event) {
    if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter)
        return false;
    confirm();
    return true;
}

void frmCustomInputBox::confirm() {
    DatiInputBox &record = datiInputBox();
    record.result.store(record.multiline ? TestoMultiline->toPlainText() : Testo->text());
    done(Accepted);
}

void frmCustomInputBox::cancel() {
    DatiInputBox &record = datiInputBox();
    record.cancelled = true;
    record.result = record.defaultText;
    done(Rejected);
}

} // namespace qir
