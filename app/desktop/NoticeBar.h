#pragma once

#include <QFrame>

#include <array>

QT_BEGIN_NAMESPACE
class QLabel;
class QPushButton;
QT_END_NAMESPACE

namespace qir {

/// What has happened to a pane's file from outside, and what can be done about it. Closing it decides nothing.
class NoticeBar : public QFrame {
    Q_OBJECT

public:
    enum Button { Reload, Keep, Compare, Dismiss };

    NoticeBar(QWidget *parent, int pane);

    /// Shows a text with these buttons beside the closing one; its own screen reader is told.
    void tell(const QString &text, const QList<Button> &buttons);
    QString text() const;

Q_SIGNALS:
    void pressed(qir::NoticeBar::Button button);

private:
    QLabel *m_text;
    std::array<QPushButton *, 4> m_buttons{};
};

} // namespace qir
