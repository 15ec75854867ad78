#pragma once

namespace qir {

/// Lengths of the window are given in twips, 1440 to the inch. A logical pixel is 1/96 inch whatever the screen's
/// scale, so it always holds 15 twips; this is the one place where the two are converted.
inline constexpr int twipsPerInch = 1440;
inline constexpr int pixelsPerInch = 96;
inline constexpr int twipsPerPixel = twipsPerInch / pixelsPerInch;

constexpr int toTwips(int pixels) {
    return pixels * twipsPerPixel;
}

/// The nearest whole number of pixels.
constexpr int toPixels(int twips) {
    const int rest = twips % twipsPerPixel;
    return twips / twipsPerPixel + (rest > twipsPerPixel / 2 ? 1 : 0) - (rest < -(twipsPerPixel / 2) ? 1 : 0);
}

/// The least whole number of pixels that holds a length of 0 or more: nothing that fits in twips is cut in pixels.
constexpr int toPixelsRoundedUp(int twips) {
    return twips / twipsPerPixel + (twips % twipsPerPixel > 0 ? 1 : 0);
}

} // namespace qir
