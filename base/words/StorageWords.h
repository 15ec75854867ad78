#pragma once

#include <QString>

#include <exception>

namespace qir {

/// A text of a component, told in the language that the program speaks: a component has English ones alone, since
/// scripts and other programs read them too. What is filled in stays as it is. A text that is not known, as another
/// maker's component may have, comes back unchanged.
QString spokenWords(const QString &text);

/// The same of what an exception says.
QString spokenWords(const std::exception &error);

} // namespace qir
