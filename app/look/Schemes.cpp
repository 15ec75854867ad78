#include "app/look/Schemes.h"

#include <QColor>

#include <algorithm>
#include <cmath>

namespace qir {

namespace {

struct Shades {
    QRgb window, text, base, alternate, button, brightText, highlight, highlightedText, link, visitedLink, placeholder,
        disabledText;
    QRgb light, midlight, mid, dark, shadow;
    QRgb toolTip, toolTipText;
};

constexpr Shades lightShades{.window = 0xffefefef,
                             .text = 0xff000000,
                             .base = 0xffffffff,
                             .alternate = 0xfff5f5f5,
                             .button = 0xffefefef,
                             .brightText = 0xff9c0000,
                             .highlight = 0xff2a6fad,
                             .highlightedText = 0xffffffff,
                             .link = 0xff0000ee,
                             .visitedLink = 0xff7a1f8a,
                             .placeholder = 0xff6b6b6b,
                             .disabledText = 0xff6a6a6a,
                             .light = 0xffffffff,
                             .midlight = 0xffcacaca,
                             .mid = 0xffb8b8b8,
                             .dark = 0xff9f9f9f,
                             .shadow = 0xff767676,
                             .toolTip = 0xffffffdc,
                             .toolTipText = 0xff000000};

constexpr Shades darkShades{.window = 0xff2b2b2b,
                            .text = 0xfff0f0f0,
                            .base = 0xff1e1e1e,
                            .alternate = 0xff262626,
                            .button = 0xff373737,
                            .brightText = 0xffff9b9b,
                            .highlight = 0xff2a6fad,
                            .highlightedText = 0xffffffff,
                            .link = 0xff7db8ff,
                            .visitedLink = 0xffd19be0,
                            .placeholder = 0xff9d9d9d,
                            .disabledText = 0xffa3a3a3,
                            .light = 0xff4a4a4a,
                            .midlight = 0xff414141,
                            .mid = 0xff5a5a5a,
                            .dark = 0xff181818,
                            .shadow = 0xff0c0c0c,
                            .toolTip = 0xff3c3c28,
                            .toolTipText = 0xfff0f0f0};

QPalette paletteOf(const Shades &shades) {
    QPalette palette;
    const auto set = [&palette](QPalette::ColorRole role, QRgb colour) { palette.setColor(role, QColor(colour)); };
    set(QPalette::Window, shades.window);
    set(QPalette::Base, shades.base);
    set(QPalette::AlternateBase, shades.alternate);
    set(QPalette::Button, shades.button);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        set(role, shades.text);
        palette.setColor(QPalette::Disabled, role, QColor(shades.disabledText));
    }
    set(QPalette::BrightText, shades.brightText);
    set(QPalette::Highlight, shades.highlight);
    set(QPalette::HighlightedText, shades.highlightedText);
    set(QPalette::Link, shades.link);
    set(QPalette::LinkVisited, shades.visitedLink);
    set(QPalette::PlaceholderText, shades.placeholder);
    set(QPalette::Light, shades.light);
    set(QPalette::Midlight, shades.midlight);
    set(QPalette::Mid, shades.mid);
    set(QPalette::Dark, shades.dark);
    set(QPalette::Shadow, shades.shadow);
    set(QPalette::ToolTipBase, shades.toolTip);
    set(QPalette::ToolTipText, shades.toolTipText);
    return palette;
}

/// One part of a colour as light, from 0 to 1.
double linear(double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

} // namespace

QPalette lightScheme() {
    return paletteOf(lightShades);
}

QPalette darkScheme() {
    return paletteOf(darkShades);
}

bool isDark(const QPalette &palette) {
    return luminance(palette.color(QPalette::Window)) < luminance(palette.color(QPalette::WindowText));
}

double contrast(const QColor &one, const QColor &other) {
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

} // namespace qir
