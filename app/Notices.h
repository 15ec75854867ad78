#pragma once

#include <QObject>
#include <QStringList>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace qir {

class QirDatabase;

/// What components have to tell without failing a command, shown in message boxes once the running command has ended.
class Notices : public QObject {
    Q_OBJECT

public:
    explicit Notices(QWidget &window)
        : m_window(window) {}

    /// To be called for every component that is made. What it tells while it is released is heard too.
    void listenTo(const QirDatabase &database);
    /// Shows what was told and not yet shown.
    void show();

private Q_SLOTS:
    void notice(const QString &text); // connected by its meta-method

private:
    void showIfIdle();

    QWidget &m_window;
    QStringList m_pending;
};

} // namespace qir
