#pragma once

#include "platform/loop/MessageLoop.h"

#include <QCloseEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <functional>
#include <memory>

namespace qir::testing {

/// A main window with two line edits and a button that closes as the editor's does.
class Window : public QWidget {
public:
    Window()
        : first(new QLineEdit(this))
        , second(new QLineEdit(this))
        , button(new QPushButton(this)) {
        first->setGeometry(0, 0, 200, 30);
        second->setGeometry(0, 40, 200, 30);
        button->setGeometry(0, 80, 200, 30);
        resize(220, 120);
    }

    QLineEdit *first;
    QLineEdit *second;
    QPushButton *button;
    std::function<void()> onClose;

protected:
    void closeEvent(QCloseEvent *) override {
        if (onClose)
            onClose();
        MessageLoop::instance()->endProgram();
    }
};

/// Answers the next message box by a button of its own and keeps what it said.
class BoxReader : public QObject {
public:
    BoxReader() {
        m_timer.setInterval(1);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (box == nullptr)
                return;
            shown.append(box->windowTitle() + QStringLiteral(": ") + box->text());
            pointer.append(QApplication::overrideCursor() != nullptr ? QApplication::overrideCursor()->shape()
                                                                     : Qt::ArrowCursor);
            box->button(QMessageBox::Ok)->click();
        });
        m_timer.start();
    }
    QStringList shown;
    QList<Qt::CursorShape> pointer;

private:
    QTimer m_timer;
};

/// A shown window under a message loop, anew for each test function.
class WithMessageLoop : public QObject {
    Q_OBJECT

protected Q_SLOTS:
    void init() {
        m_window = std::make_unique<Window>();
        m_loop = std::make_unique<MessageLoop>(m_window.get());
        m_loop->setErrorTitle(QStringLiteral("QIR Database Editor"));
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        m_window->first->setFocus();
        m_textDuring.clear();
    }
    void cleanup() {
        m_loop.reset();
        m_window.reset();
        QVERIFY(QApplication::overrideCursor() == nullptr);
    }

protected:
    /// Runs a command that yields once after something was done to the window.
    void runWith(const std::function<void()> &input) {
        m_loop->run([&] {
            QTimer::singleShot(0, m_window.get(), input);
            m_loop->yield();
            m_textDuring = m_window->first->text();
        });
    }

    std::unique_ptr<Window> m_window;
    std::unique_ptr<MessageLoop> m_loop;
    QString m_textDuring;
};

} // namespace qir::testing
