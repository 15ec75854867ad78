#pragma once

#include <QLabel>

namespace qir {

/// A label for a file name: one that is too long for its place is shown with its middle left out, so that its end
/// stays readable, and in full as a tool tip. text() is always the whole name.
class FileNameLabel : public QLabel {
    Q_OBJECT

public:
    explicit FileNameLabel(QWidget *parent)
        : QLabel(parent) {}

    /// A long name asks for no more room than is there.
    QSize minimumSizeHint() const override;

    bool event(QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool isCut() const;
};

} // namespace qir
