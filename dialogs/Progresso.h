#pragma once

#include <QDialog>

QT_BEGIN_NAMESPACE
class QLabel;
class QProgressBar;
QT_END_NAMESPACE

namespace qir {

/// A window that shows how far a long operation is: a text and a bar, both set by whoever uses it.
class Progresso : public QDialog {
    Q_OBJECT

public:
    explicit Progresso(QWidget *parent);

    QLabel &Label1() { return *m_label; }
    QProgressBar &ProgressBar1() { return *m_bar; }

    /// Shows the window, in the horizontal middle of the screen, and yields once, so that it is painted at once.
    void Form_Load();

private:
    QLabel *m_label;
    QProgressBar *m_bar;
};

} // namespace qir
