#pragma once

#include <QObject>

QT_BEGIN_NAMESPACE
class QAction;
class QLabel;
class QLineEdit;
QT_END_NAMESPACE

namespace qir {

/// What helps with a text that is not shown: an eye in the text box, which shows it as long as it is pressed in, and a
/// line that tells of Caps Lock once a letter comes that only it explains. The text box owns this.
class PasswordAids : public QObject {
    Q_OBJECT

public:
    explicit PasswordAids(QLineEdit &box);

    /// The line, to be placed; its room stays while it is hidden.
    QLabel *capsLock() const { return m_capsLock; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showText(bool shown);

    QLineEdit &m_box;
    QAction *m_eye;
    QLabel *m_capsLock;
};

} // namespace qir
