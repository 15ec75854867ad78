#pragma once

#include "qirtbase/container/CoreDumps.h"

#include <QString>

#include <cstddef>
#include <optional>
#include <span>

namespace qir {

/// Bytes that must not leak: in memory of their own between guard pages, locked against swapping where the system
/// allows it, and wiped when freed; as long as there are any, the process leaves no core dump. Moved, never copied by
/// accident.
class SecretBytes {
public:
    SecretBytes() = default;
    /// `size` bytes, to be filled by the caller. Throws std::bad_alloc.
    explicit SecretBytes(std::size_t size);
    SecretBytes(SecretBytes &&other) noexcept;
    SecretBytes &operator=(SecretBytes &&other) noexcept;
    ~SecretBytes();

    SecretBytes clone() const;
    void clear();

    bool isEmpty() const { return m_size == 0; }
    std::size_t size() const { return m_size; }
    unsigned char *data() { return m_bytes; }
    const unsigned char *data() const { return m_bytes; }
    /// Cuts to the first `size` bytes, at most size().
    void shorten(std::size_t size);
    /// Compares in constant time; of different sizes never equal.
    bool equals(const SecretBytes &other) const;

private:
    unsigned char *m_bytes = nullptr;
    std::size_t m_size = 0;
    std::optional<NoCoreDump> m_noCoreDump; // while there are bytes
};

/// Overwrites what calls that have just returned may have left of a secret on the stack.
void wipeStack();

/// A password as it goes into the key derivation: normalised to NFC, UTF-8, in guarded memory. No copy is left behind.
SecretBytes passwordBytes(const QString &password);

} // namespace qir
