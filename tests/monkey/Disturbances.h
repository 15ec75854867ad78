#pragma once

#include "tests/monkey/Numbers.h"

#include <QString>
#include <QTemporaryDir>

QT_BEGIN_NAMESPACE
class QByteArray;
QT_END_NAMESPACE

namespace qir {
class FakeControl;
}

namespace qir::test {

/// The monkey's own folder of databases, and what happens to them from outside.
class MonkeyFiles {
public:
    static const QString left;
    static const QString right;
    static const QString locked; ///< Protected with `password`.
    static const QString large;  ///< Large enough that commands yield.
    static const QString password;

    /// Makes the databases with the component in use. Throws what it throws.
    MonkeyFiles();

    QString folder() const { return m_folder.path(); }
    QString path(const QString &name) const { return m_folder.filePath(name); }

    /// Another program replaces, damages, removes or restores one of the files. Gives what it did.
    QString disturb(Numbers &numbers);
    void restoreAll() const;

private:
    void restore(const QString &name) const;

    QTemporaryDir m_folder;
    QTemporaryDir m_originals;
};

/// Errors of the fake component: at the n-th call from now on, or at every call of a member until the next order.
class ComponentErrors {
public:
    explicit ComponentErrors(FakeControl &fake);
    ~ComponentErrors();
    ComponentErrors(const ComponentErrors &) = delete;
    ComponentErrors &operator=(const ComponentErrors &) = delete;

    /// Gives what was ordered.
    QString order(Numbers &numbers);
    /// For looking at the component: between these two every call goes through and counts nowhere.
    void pause() { m_paused = true; }
    void resume() { m_paused = false; }

private:
    void clear();

    FakeControl &m_fake;
    bool m_paused = false;
    int m_callsLeft = 0; // until the one that fails; 0 none
    QString m_member;    // that always fails
};

} // namespace qir::test
