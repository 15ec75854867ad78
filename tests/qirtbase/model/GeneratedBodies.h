#pragma once

#include <QByteArray>

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace qir {

/// A body that a reader accepts, made without the writer, and what is in it.
struct GeneratedBody {
    std::string name;
    QByteArray bytes;
    std::size_t tables = 0;
    std::size_t fields = 0;
    std::size_t cells = 0;
};
inline void PrintTo(const GeneratedBody &body, std::ostream *out) {
    *out << body.name << ", " << body.bytes.size() << " bytes";
}

/// Bodies of about a megabyte, or a part of that, that are large in one way: as many tables, fields, records, names or
/// texts as that holds.
std::vector<GeneratedBody> extremeBodies(int part = 1);
/// A body of anything, smaller than these.
GeneratedBody randomBody(unsigned seed);

} // namespace qir
