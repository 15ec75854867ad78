#pragma once

#include <QLineEdit>

namespace qir {

/// A text box that shows a sign for each invisible character of its text: a line end in it is one blank wide.
class CellTextBox : public QLineEdit {
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool showsInvisible(const QString &cell);
};

} // namespace qir
