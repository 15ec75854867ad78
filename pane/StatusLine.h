#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

QT_BEGIN_NAMESPACE
class QLabel;
class QWidget;
QT_END_NAMESPACE

namespace qir {

/// The line below the panes: on its left where a person is, on its right what has changed and differs. A message takes
/// the left's place for a while.
class StatusLine : public QObject {
    Q_OBJECT

public:
    StatusLine();

    /// The labels, and the progress bar that they give way to while it stands in their place. To be called once.
    void setControls(QLabel &left, QLabel &right, QWidget &bar);

    /// Room for the line; the right part takes what it needs, the left one what is left.
    void place(const QRect &room);

    /// What the line tells when there is no message. To be called at the end of each command.
    void setState(const QString &left, const QString &right);
    /// Tells what came of a command, for a few seconds; a later command that leads to another state ends it sooner.
    void showMessage(const QString &text);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void show();
    void giveWay();

    QLabel *m_leftLabel = nullptr;
    QLabel *m_rightLabel = nullptr;
    QWidget *m_bar = nullptr;
    QString m_left;
    QString m_message;
    bool m_new = false; // the message was set since the last state
    QTimer m_end;
};

} // namespace qir
