#include "qirtbase/container/KeyDerivation.h"

#include <sodium.h>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t keySize = 32;
constexpr char headKeyContext[crypto_kdf_CONTEXTBYTES + 1] = "QIR head";
constexpr std::uint64_t headKeyNumber = 1;

static_assert(crypto_kdf_KEYBYTES == keySize && crypto_kdf_CONTEXTBYTES == 8);
static_assert(crypto_secretstream_xchacha20poly1305_KEYBYTES == keySize);
static_assert(crypto_pwhash_argon2id_SALTBYTES == layout::saltSize);

} // namespace

LoadResult<SecretBytes> deriveMasterKey(const SecretBytes &password, const KdfParameters &parameters) {
    SecretBytes key(keySize);
    const char *text = password.isEmpty() ? "" : reinterpret_cast<const char *>(password.data());
    const int done = crypto_pwhash_argon2id(key.data(), key.size(), text, password.size(), parameters.salt.data(),
                                            parameters.costs.passes, std::size_t{parameters.costs.memoryKiB} * 1024,
                                            crypto_pwhash_argon2id_ALG_ARGON2ID13);
    wipeStack();
    if (done != 0)
        return refused(LoadErrorKind::Limits, u"there is not enough memory to turn the password into a key "
                                              "(%1 MiB are needed)"_s.arg(parameters.costs.memoryKiB / 1024));
    return key;
}

SecretBytes deriveHeadKey(const SecretBytes &master) {
    SecretBytes key(keySize);
    crypto_kdf_derive_from_key(key.data(), key.size(), headKeyNumber, headKeyContext, master.data());
    wipeStack();
    return key;
}

SecretBytes deriveBodyKey(const SecretBytes &master, const HeaderDigest &digest) {
    SecretBytes key(keySize);
    crypto_generichash(key.data(), key.size(), digest.data(), digest.size(), master.data(), master.size());
    wipeStack();
    return key;
}

} // namespace qir
