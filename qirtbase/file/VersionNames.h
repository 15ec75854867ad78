#pragma once

#include <QString>

#include <string>

namespace qir {

/// What a kept version of a file is called: "NAME (WHAT TIME)".
struct VersionName {
    QString name; ///< Cut where the whole would be too long for a file name.
    QString what;
    QString extension; ///< Added at the end, with its dot.
};

/// The number-th try: from the second on the number is part of it.
QString versionName(const VersionName &parts, int number);
/// How many such names to try before giving up.
inline constexpr int versionNamesMax = 100;

} // namespace qir
