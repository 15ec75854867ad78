#pragma once

#include "tests/tools/ComponentPath.h"

#include <QList>
#include <QMetaObject>
#include <QPluginLoader>
#include <QString>
#include <QVariant>

#include <functional>
#include <stdexcept>

namespace qir {

/// One call that the fake component got.
struct FakeCall {
    QString member;         ///< As in the contract; "(create)" and "(release)" for the life of an instance.
    QVariantList arguments; ///< In call order. A property or indexed property that is written has one more than read.
    int instance = 0;       ///< Instances are numbered from 1 in the order in which they were made.
};

/// What tests see of the fake component behind its contract, and what they make it do. One for all instances of the
/// process. The fake itself is loaded as any component is; this reaches into the loaded library.
class FakeControl {
public:
    /// The control of the library that the tests' target names; loads it. Link `fake_component`.
    static FakeControl &get();

    /// Forgets the log and every order given; instances stay.
    virtual void reset() = 0;

    virtual const QList<FakeCall> &log() const = 0;
    virtual void clearLog() = 0;
    /// Counting goes on without: for loops over many records.
    virtual void setLogging(bool on) = 0;
    /// How many calls there were since the last reset, of a member or (empty) of all; kept also while nothing is
    /// logged.
    virtual int calls(const QString &member = QString()) const = 0;
    /// How many instances are alive.
    virtual int instances() const = 0;

    /// The n-th call from now on (1 is the next) raises an error with this text, and changes nothing.
    virtual void failAtCall(int n, const QString &text) = 0;
    /// Every call of the member raises an error, from its `first`-th call from now on.
    virtual void failOn(const QString &member, const QString &text, int first = 1) = 0;
    /// No orders of either kind any more.
    virtual void stopFailing() = 0;
    /// Called before every call takes effect; what it throws is what the component throws.
    virtual void setHook(std::function<void(const FakeCall &)> hook) = 0;

    /// GetDatabaseFileName gives the empty text.
    virtual void setHideFileName(bool hide) = 0;
    /// SetDatabaseFileName gives False and changes nothing.
    virtual void setRefuseFileName(bool refuse) = 0;
    /// Tables may have equal names (AddTable, RenameTable); a look-up finds the first.
    virtual void setAllowDuplicates(bool allow) = 0;
    /// Instances made from now on have the members for taking steps back.
    virtual void setSteps(bool has) = 0;
    /// Instances made from now on have the members for whole columns, and keep so many records of a column together; 0,
    /// as after a reset: they lack them.
    virtual void setColumns(int recordsTogether) = 0;
    /// Lets every living instance tell this through its Notice signal.
    virtual void notice(const QString &text) = 0;

protected:
    ~FakeControl() = default;
};

#ifdef FAKE_COMPONENT_FILE
inline FakeControl &FakeControl::get() {
    static FakeControl *const control = [] {
        QPluginLoader loader(QStringLiteral(FAKE_COMPONENT_FILE));
        QObject *root = loader.instance();
        void *found = nullptr;
        if (!root || !QMetaObject::invokeMethod(root, "Control", Q_RETURN_ARG(void *, found)))
            throw std::runtime_error(loader.errorString().toStdString());
        return static_cast<FakeControl *>(found);
    }();
    return *control;
}

/// Makes the fake the component of the process, with a fresh control, while it lives.
class UseFake {
public:
    /// `columns` as in FakeControl::setColumns().
    explicit UseFake(int columns = 0)
        : m_path({QStringLiteral(FAKE_COMPONENT_FOLDER)}) {
        FakeControl::get().reset();
        FakeControl::get().setColumns(columns);
    }
    ~UseFake() { FakeControl::get().reset(); }
    UseFake(const UseFake &) = delete;
    UseFake &operator=(const UseFake &) = delete;
    FakeControl *operator->() const { return &FakeControl::get(); }

private:
    ComponentPath m_path;
};
#endif

} // namespace qir
