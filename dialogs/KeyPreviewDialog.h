#pragma once

#include <QDialog>

QT_BEGIN_NAMESPACE
class QKeyEvent;
QT_END_NAMESPACE

namespace qir {

/// A modal dialog that sees every key before the control that has the focus. Closing it by its close box answers
/// nothing: it just goes.
class KeyPreviewDialog : public QDialog {
    Q_OBJECT

public:
    explicit KeyPreviewDialog(QWidget *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    /// A key pressed while `focused` has the focus; true when it is dealt with and goes no further.
    virtual bool Form_KeyDown(const QKeyEvent &event, const QObject *focused) = 0;

    void keyPressEvent(QKeyEvent *event) override;
    /// To be called when all controls are made.
    void previewKeysOfControls();
};

} // namespace qir
