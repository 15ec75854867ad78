#include "app/Notices.h"

#include "base/words/StorageWords.h"
#include "db/QirDatabase.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/loop/MessageLoop.h"

#include <QMetaMethod>
#include <QWidget>

namespace qir {

using namespace Qt::StringLiterals;

void Notices::listenTo(const QirDatabase &database) {
    static const QMetaMethod receiver = staticMetaObject.method(staticMetaObject.indexOfSlot("notice(QString)"));
    database.relayNotices(*this, receiver);
}

void Notices::notice(const QString &text) {
    m_pending.append(text);
    // A component may tell something by itself, while no command runs.
    QMetaObject::invokeMethod(this, &Notices::showIfIdle, Qt::QueuedConnection);
}

void Notices::showIfIdle() {
    const MessageLoop *loop = MessageLoop::instance();
    if (loop == nullptr || !loop->commandRunning())
        show();
}

void Notices::show() {
    while (!m_pending.isEmpty())
        messageBox(&m_window, spokenWords(m_pending.takeFirst()), u"!"_s);
}

} // namespace qir
