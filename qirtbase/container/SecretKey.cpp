#include "qirtbase/container/SecretKey.h"

#include <QStringConverter>

#include <sodium.h>

#include <cstring>
#include <new>
#include <utility>

namespace qir {

namespace {

void startSodium() {
    static const int started = sodium_init();
    if (started < 0)
        throw std::bad_alloc();
}

} // namespace

SecretBytes::SecretBytes(std::size_t size) {
    if (size == 0)
        return;
    startSodium();
    m_noCoreDump.emplace();
    m_bytes = static_cast<unsigned char *>(sodium_malloc(size));
    if (!m_bytes)
        throw std::bad_alloc();
    m_size = size;
}

SecretBytes::SecretBytes(SecretBytes &&other) noexcept
    : SecretBytes() {
    *this = std::move(other);
}

SecretBytes &SecretBytes::operator=(SecretBytes &&other) noexcept {
    if (this != &other) {
        clear();
        if (other.m_bytes)
            m_noCoreDump.emplace();
        m_bytes = std::exchange(other.m_bytes, nullptr);
        m_size = std::exchange(other.m_size, 0);
        other.m_noCoreDump.reset();
    }
    return *this;
}

SecretBytes::~SecretBytes() {
    clear();
}

SecretBytes SecretBytes::clone() const {
    SecretBytes copy(m_size);
    // Byte by byte, which volatile keeps it to: a copy in one go leaves the bytes in vector registers, and the next
    // call that the loader binds, anybody's, stores those on the stack.
    const volatile unsigned char *bytes = m_bytes;
    for (std::size_t i = 0; i < m_size; ++i)
        copy.m_bytes[i] = bytes[i];
    return copy;
}

void SecretBytes::clear() {
    sodium_free(m_bytes); // wipes; does nothing with null
    m_bytes = nullptr;
    m_size = 0;
    m_noCoreDump.reset();
}

void SecretBytes::shorten(std::size_t size) {
    if (size == 0)
        clear();
    else if (size < m_size)
        m_size = size;
}

bool SecretBytes::equals(const SecretBytes &other) const {
    return m_size == other.m_size && (m_size == 0 || sodium_memcmp(m_bytes, other.m_bytes, m_size) == 0);
}

void wipeStack() {
    constexpr std::size_t deepest = std::size_t{16} << 10; // more than a hash or a cipher takes
    // What is left in registers would go to the stack with the next call that the loader binds: another hash and
    // another copy of the same size take the same ones.
    const volatile std::size_t size = crypto_generichash_BYTES; // not known to the compiler, which would do without
    unsigned char hash[crypto_generichash_BYTES];
    unsigned char copy[crypto_generichash_BYTES];
    crypto_generichash(hash, size, nullptr, 0, nullptr, 0);
    std::memcpy(copy, hash, size);
    static_cast<void>(*static_cast<volatile unsigned char *>(copy));
    sodium_stackzero(deepest);
}

SecretBytes passwordBytes(const QString &password) {
    QString normalised = password.normalized(QString::NormalizationForm_C);
    QStringEncoder encoder(QStringConverter::Utf8);
    SecretBytes bytes(static_cast<std::size_t>(encoder.requiredSpace(normalised.size())));
    if (!bytes.isEmpty()) {
        auto *begin = reinterpret_cast<char *>(bytes.data());
        const char *end = encoder.appendToBuffer(begin, normalised);
        bytes.shorten(static_cast<std::size_t>(end - begin));
    }
    // Where normalising made a copy, that copy is ours to wipe; where it did not, this is the caller's string.
    if (normalised.constData() != password.constData() && normalised.isDetached())
        sodium_memzero(normalised.data(), static_cast<std::size_t>(normalised.size()) * sizeof(QChar));
    return bytes;
}

} // namespace qir
