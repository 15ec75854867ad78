#pragma once

#include <QString>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace qir::test {

/// What is wrong with the places of the visible controls of a window: one that reaches outside its parent, two that
/// overlap, or one that is too small for its text. "" when all is well.
QString layoutProblems(const QWidget &window);

} // namespace qir::test
