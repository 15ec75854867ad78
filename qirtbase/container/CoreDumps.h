#pragma once

namespace qir {

/// While one of these lives, a crash of the program writes no core dump, neither to a file nor to a program that the
/// system pipes it to, and other programs of the same user cannot read its memory. What the program had set before
/// comes back with the last one. Any thread; costs nothing beside another one.
class NoCoreDump {
public:
    NoCoreDump();
    ~NoCoreDump();
    NoCoreDump(const NoCoreDump &) = delete;
    NoCoreDump &operator=(const NoCoreDump &) = delete;
};

} // namespace qir
