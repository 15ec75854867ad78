#include "qirtbase/container/CoreDumps.h"

#include <sys/prctl.h>

#include <mutex>

namespace qir {

namespace {

// A limit on the size of core files (RLIMIT_CORE) would not do: the system does not look at it where dumps are piped to
// a program, which is how most desktops are set up.
constexpr int notDumpable = 0;
constexpr int dumpable = 1;

struct Count {
    std::mutex mutex;
    int living = 0;
    int before = notDumpable; // what the program had set
};

Count &count() {
    static Count instance;
    return instance;
}

} // namespace

NoCoreDump::NoCoreDump() {
    Count &all = count();
    const std::lock_guard lock(all.mutex);
    if (all.living++ > 0)
        return;
    all.before = ::prctl(PR_GET_DUMPABLE);
    if (all.before == dumpable)
        ::prctl(PR_SET_DUMPABLE, notDumpable);
}

NoCoreDump::~NoCoreDump() {
    Count &all = count();
    const std::lock_guard lock(all.mutex);
    if (--all.living == 0 && all.before == dumpable)
        ::prctl(PR_SET_DUMPABLE, dumpable);
}

} // namespace qir
