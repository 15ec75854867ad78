#pragma once

#include <QString>

namespace qir {

/// A value as one line of a question or a list tells it: no more than some of its characters, with dots where others
/// are left out, signs for line ends and tabs. `place` counts characters of the text: those around it are told.
QString shortText(const QString &text, qsizetype place = 0);

/// The first place in which two texts are not the same.
qsizetype firstDifference(const QString &first, const QString &second);

} // namespace qir
