#pragma once

#include "dialogs/KeyPreviewDialog.h"

#include <array>

QT_BEGIN_NAMESPACE
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
QT_END_NAMESPACE

namespace qir {

/// The window of CustomInputBox(). Reads what to ask from the shared record when it is made and writes the answer
/// there when it is closed.
class frmCustomInputBox : public KeyPreviewDialog {
    Q_OBJECT

public:
    explicit frmCustomInputBox(QWidget *parent);
    ~frmCustomInputBox() override;

protected:
    bool Form_KeyDown(const QKeyEvent &event, const QObject *focused) override;

private:
    void buildControls();
    void Form_Load();
    void showMultiline();
    void showSingleLine();
    /// Enter in the single-line box confirms; true when the key was that.
    bool Testo_KeyPress(const QKeyEvent &event);
    void confirm();
    void cancel();

    QLabel *Prompt = nullptr;
    QLineEdit *Testo = nullptr;
    QPlainTextEdit *TestoMultiline = nullptr;
    std::array<QPushButton *, 2> comandi{}; ///< OK, Cancel.
};

} // namespace qir
