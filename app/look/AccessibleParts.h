#pragma once

namespace qir {

/// Tells assistive tools of the window's own parts what Qt does not know: what kind of control the borders and the
/// strips of differences are. Helpers that nobody sees or reaches are left out. To be called once, before the window
/// is built; further calls do nothing.
void installAccessibleParts();

} // namespace qir
