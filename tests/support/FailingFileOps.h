#pragma once

#include "tests/support/ForwardingFileOps.h"

#include <functional>
#include <vector>

namespace qir {

/// What goes wrong, and at which call.
struct Fault {
    enum class Kind {
        Undone,    ///< The call fails, nothing was done.
        Done,      ///< The call was done, yet it reports failure.
        ShortCount ///< Reads and writes do one byte only; other calls are as usual.
    };

    int at = -1; ///< The number of the call, from 0; -1 for never.
    Kind kind = Kind::Undone;
    int number = 0;       ///< The errno value.
    bool forever = false; ///< Every later call too, or this one only.
};

/// The system with a fault in it. Counts the calls, so that a loop can put the fault at each of them in turn.
class FailingFileOps : public ForwardingFileOps {
public:
    explicit FailingFileOps(Fault fault = {}, FileOps &under = FileOps::system())
        : ForwardingFileOps(under)
        , m_fault(fault) {}

    int calls() const { return static_cast<int>(m_made.size()); }
    bool faultMet() const { return m_fault.at >= 0 && calls() > m_fault.at; }
    /// From now on all is well.
    void heal() { m_fault = {}; }
    /// The calls made, in order.
    const std::vector<FileCall> &made() const { return m_made; }

protected:
    std::optional<SystemError> before(FileCall call, const std::string &name) override;
    std::optional<SystemError> after(FileCall call) override;
    std::size_t allowed(FileCall call, std::size_t size) override;

private:
    bool isFaulty() const;

    Fault m_fault;
    std::vector<FileCall> m_made;
};

/// The system with a hook before each call: for tests in which something happens at a certain point, and for
/// file systems that do not know certain calls.
class HookedFileOps : public ForwardingFileOps {
public:
    using Hook = std::function<std::optional<SystemError>(FileCall call, const std::string &name)>;
    using FlagHook = std::function<std::optional<SystemError>(unsigned flags)>;

    explicit HookedFileOps(Hook hook, FileOps &under = FileOps::system())
        : ForwardingFileOps(under)
        , onCall(std::move(hook)) {}

    Hook onCall;     ///< Asked before each call.
    FlagHook onOpen; ///< Asked before an open, with its flags.
    /// Asked before an open, with the folder's path.
    std::function<std::optional<SystemError>(const std::string &folder, unsigned flags)> onOpenIn;
    FlagHook onRename; ///< Asked before a renaming, with its flags.

protected:
    std::optional<SystemError> before(FileCall call, const std::string &name) override {
        return onCall ? onCall(call, name) : std::nullopt;
    }
    SystemResult<int> doOpenAt(int folder, const std::string &name, int flags, mode_t mode) override;
    SystemResult<void> doRenameAt(int folder, const std::string &from, const std::string &to, unsigned flags) override;
};

} // namespace qir
