#pragma once

#include "qirtbase/container/KeyDerivation.h"

#include <memory>
#include <optional>
#include <vector>

namespace qir {

/// One key derivation that runs in a thread of its own, so that whoever waits for it need not stand still.
///
/// The thread knows nothing but the password, the numbers and the function that it was given. A derivation cannot be
/// broken off: one that nobody waits for any more goes on by itself, and what it holds is wiped at its end. So that
/// those that were given up do not add up their memory, what would pass all that one file may ask for and a usual one
/// beside it waits for its turn.
class KeyPreparation {
public:
    KeyPreparation() = default;
    ~KeyPreparation() { cancel(); }
    KeyPreparation(const KeyPreparation &) = delete;
    KeyPreparation &operator=(const KeyPreparation &) = delete;

    /// Gives up the one before. Throws std::system_error where no thread is to be had.
    void start(const KeyDeriver &derive, SecretBytes password, const KdfParameters &parameters);
    /// Whether one was started whose key is not there yet.
    bool isPending() const;
    /// Gives it up; does not wait.
    void cancel();
    /// What came of it, once; waits for it where it still runs. Nothing, and what was started is given up, where that
    /// was another password or other numbers.
    std::optional<LoadResult<SecretBytes>> take(const SecretBytes &password, const KdfParameters &parameters);

private:
    struct Shared;
    std::shared_ptr<Shared> m_shared;
};

/// Derives each key of one load once: a file that is read again, and journals and copies that were sealed under the
/// same password and numbers, cost nothing more.
class DerivedKeys {
public:
    LoadResult<SecretBytes> derive(const KeyDeriver &derive, const SecretBytes &password,
                                   const KdfParameters &parameters);
    /// Wipes all of them, and gives up what is prepared.
    void clear();
    KeyPreparation &prepared() { return m_prepared; }

private:
    struct Known {
        KdfParameters parameters;
        SecretBytes password;
        SecretBytes master;
    };

    std::vector<Known> m_known;
    KeyPreparation m_prepared;
};

} // namespace qir
