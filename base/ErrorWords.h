#pragma once

#include <QString>

#include <exception>

namespace qir {

/// True for what the library throws where memory runs out.
bool isLackOfMemory(const std::exception &error);

/// What an exception says to the user. The library's own ones for a lack of memory have no words of their own.
QString errorWords(const std::exception &error);

} // namespace qir
