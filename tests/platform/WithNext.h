#pragma once

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <functional>

namespace qir::testing {

/// Hands the next modal dialog of a class to a function once it shows.
template<class Dialog>
class WithNext : public QObject {
public:
    explicit WithNext(std::function<void(Dialog &)> use)
        : m_use(std::move(use)) {
        m_timer.setInterval(1);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
            if (dialog == nullptr || !dialog->isVisible())
                return;
            m_timer.stop();
            ++met;
            const QPointer<Dialog> shown(dialog);
            m_use(*dialog);
            if (shown && QTest::currentTestFailed())
                static_cast<QDialog *>(shown)->done(QDialog::Rejected); // the failed check has left it open
        });
        m_timer.start();
    }
    int met = 0;

private:
    std::function<void(Dialog &)> m_use;
    QTimer m_timer;
};

} // namespace qir::testing
