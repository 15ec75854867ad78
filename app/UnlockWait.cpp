#include "app/UnlockWait.h"

#include "app/shared/Funzioni.h"
#include "db/QirDatabase.h"
#include "dialogs/CancellableProgress.h"
#include "platform/loop/MessageLoop.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QFontMetrics>

#include <optional>

namespace qir {

namespace {

constexpr qint64 momentMilliseconds = 300; // what takes less needs no window
constexpr int nameColumns = 40;            // of a long name, in average characters

QString textFor(const QWidget &window, const QString &fileName) {
    const QFontMetrics metrics = window.fontMetrics();
    const QString name =
        metrics.elidedText(QFileInfo(fileName).fileName(), Qt::ElideMiddle, metrics.averageCharWidth() * nameColumns);
    return QObject::tr("Checking the password of '%1'...").arg(name);
}

/// Given up unless it came to its end: by a cancel, by an error, by the end of the program.
class Unlocking {
public:
    explicit Unlocking(const QirDatabase &database)
        : m_database(database) {}
    ~Unlocking() {
        try {
            if (!m_done)
                m_database.CancelUnlock();
        } catch (const std::exception &) { // the load does without
        }
    }
    Unlocking(const Unlocking &) = delete;
    Unlocking &operator=(const Unlocking &) = delete;

    bool isPending() {
        m_done = !m_database.UnlockPending();
        return !m_done;
    }

private:
    const QirDatabase &m_database;
    bool m_done = false;
};

} // namespace

bool unlockWithoutStandingStill(QWidget *window, const QirDatabase &database, const QString &fileName,
                                const QString &password) {
    if (!database.BeginUnlock(fileName, password))
        return true;
    Unlocking unlocking(database);
    QElapsedTimer waited;
    waited.start();
    std::optional<CancellableProgress> progress;
    std::optional<AttendedWindow> attended;
    while (unlocking.isPending()) {
        if (progress && progress->isCancelled())
            return false;
        if (!progress && waited.elapsed() >= momentMilliseconds) {
            progress.emplace(window, applicationTitle(), textFor(*window, fileName));
            attended.emplace(*progress);
            progress->Form_Load();
        }
        waitForMessages();
    }
    return !progress || !progress->isCancelled();
}

} // namespace qir
