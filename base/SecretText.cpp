#include "base/SecretText.h"

namespace qir {

void overwrite(QString &text) {
    // A literal has no memory of its own to overwrite. Written through a volatile pointer, or the compiler would drop
    // what nobody reads again; not through QString's own members, which would write to a copy.
    if (text.data_ptr().isMutable()) {
        auto *characters = const_cast<volatile char16_t *>(reinterpret_cast<const char16_t *>(text.utf16()));
        for (qsizetype i = 0; i < text.size(); ++i)
            characters[i] = u' ';
    }
    text.clear();
}

} // namespace qir
