#pragma once

namespace qir {

/// While one of these lives, the program overwrites all memory that it gives back, whoever gives it back: the text
/// boxes and layouts that a typed password goes through keep copies of their own, which nobody else can reach. To live
/// for the whole of a command that asks for a password.
///
/// Works by standing in for the C library's free and realloc, so only programs link it, never a library that is loaded.
/// Under the address sanitizer, which stands in for them itself, it does nothing.
class FreedMemoryWipe {
public:
    FreedMemoryWipe();
    ~FreedMemoryWipe();
    FreedMemoryWipe(const FreedMemoryWipe &) = delete;
    FreedMemoryWipe &operator=(const FreedMemoryWipe &) = delete;

    /// False in a build where it does nothing.
    static bool works();
};

} // namespace qir
