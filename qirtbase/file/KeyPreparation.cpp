#include "qirtbase/file/KeyPreparation.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// The memory of the derivations that run.
struct Running {
    std::mutex mutex;
    std::condition_variable freed;
    std::uint64_t memoryKiB = 0;
};

Running &running() {
    static auto *const all = new Running; // threads that nobody waits for outlive the program's statics
    return *all;
}

constexpr std::uint64_t memoryLimitKiB = std::uint64_t{memoryMaxKiB} + KdfCosts{}.memoryKiB;

/// A derivation's turn; waits for it.
class Turn {
public:
    explicit Turn(std::uint64_t memoryKiB)
        : m_memoryKiB(memoryKiB) {
        Running &all = running();
        std::unique_lock lock(all.mutex);
        all.freed.wait(lock, [&] { return all.memoryKiB == 0 || all.memoryKiB + m_memoryKiB <= memoryLimitKiB; });
        all.memoryKiB += m_memoryKiB;
    }
    ~Turn() {
        Running &all = running();
        const std::lock_guard lock(all.mutex);
        all.memoryKiB -= m_memoryKiB;
        all.freed.notify_all();
    }
    Turn(const Turn &) = delete;
    Turn &operator=(const Turn &) = delete;

private:
    const std::uint64_t m_memoryKiB;
};

LoadError notDerived() {
    return {LoadErrorKind::Limits, u"there is not enough memory to turn the password into a key"_s};
}

} // namespace

struct KeyPreparation::Shared {
    KeyDeriver derive;
    KdfParameters parameters;
    SecretBytes password;

    std::mutex mutex;
    std::condition_variable ended;
    bool cancelled = false;
    std::optional<LoadResult<SecretBytes>> result;

    void run();
    bool isCancelled() {
        const std::lock_guard lock(mutex);
        return cancelled;
    }
};

/// Runs in the thread.
void KeyPreparation::Shared::run() {
    LoadResult<SecretBytes> derived = tl::unexpected(notDerived());
    {
        const Turn mine(parameters.costs.memoryKiB);
        if (!isCancelled()) {
            try {
                derived = derive(password, parameters);
            } catch (...) { // NOLINT(bugprone-empty-catch): memory ran out, as the result says already
            }
        }
    }
    const std::lock_guard lock(mutex);
    if (!cancelled)
        result = std::move(derived);
    ended.notify_all();
}

void KeyPreparation::start(const KeyDeriver &derive, SecretBytes password, const KdfParameters &parameters) {
    cancel();
    auto shared = std::make_shared<Shared>();
    shared->derive = derive;
    shared->parameters = parameters;
    shared->password = std::move(password);
    std::thread([mine = shared]() mutable {
        mine->run();
        mine.reset();
        wipeStack(); // the system keeps it for the next thread
    }).detach();
    m_shared = std::move(shared);
}

bool KeyPreparation::isPending() const {
    if (!m_shared)
        return false;
    const std::lock_guard lock(m_shared->mutex);
    return !m_shared->result.has_value();
}

void KeyPreparation::cancel() {
    if (!m_shared)
        return;
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->cancelled = true;
        m_shared->result.reset();
    }
    m_shared.reset();
}

std::optional<LoadResult<SecretBytes>> KeyPreparation::take(const SecretBytes &password,
                                                            const KdfParameters &parameters) {
    if (!m_shared)
        return std::nullopt;
    const std::shared_ptr<Shared> shared = std::exchange(m_shared, nullptr);
    std::unique_lock lock(shared->mutex);
    if (shared->parameters != parameters || !shared->password.equals(password)) {
        shared->cancelled = true;
        return std::nullopt;
    }
    shared->ended.wait(lock, [&] { return shared->result.has_value(); });
    return std::move(shared->result);
}

void DerivedKeys::clear() {
    m_known.clear();
    m_prepared.cancel();
}

LoadResult<SecretBytes> DerivedKeys::derive(const KeyDeriver &derive, const SecretBytes &password,
                                            const KdfParameters &parameters) {
    for (const Known &known : m_known)
        if (known.parameters == parameters && known.password.equals(password))
            return known.master.clone();
    auto prepared = m_prepared.take(password, parameters);
    LoadResult<SecretBytes> master = prepared ? std::move(*prepared) : derive(password, parameters);
    if (master)
        m_known.push_back({parameters, password.clone(), master->clone()});
    return master;
}

} // namespace qir
