#pragma once

#include "tests/window/EditorFixture.h"
#include "tests/window/model/EditorModel.h"

namespace qir::test {

/// What window, components and model disagree about; "" when nothing. Where the model leaves a choice (which line is
/// selected, whether a grid was loaded again), takes over what the window shows. Changes nothing in the editor but
/// makes the shown table current, as the next command would.
QString disagreement(EditorFixture &fixture, EditorModel &model);

/// What the file on disk and the model disagree about.
QString fileDisagreement(const QString &path, const PlainDatabase &expected);

} // namespace qir::test
