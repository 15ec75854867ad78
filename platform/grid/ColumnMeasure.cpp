#include "platform/grid/ColumnMeasure.h"

#include "platform/controls/Twips.h"
#include "platform/grid/CellTextDrawing.h"
#include "platform/grid/Grid.h"

#include <QString>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>
#include <unordered_set>

namespace qir {

namespace {

constexpr qreal unitsPerPixel = 64;
constexpr int twipsBesideText = 60;
// More than any text is wide, and small enough for sums of as many as a text has characters.
constexpr std::uint64_t unbounded = std::uint64_t{1} << 36;

// What passes between two pauses, and what a layout counts for.
constexpr std::size_t workBetweenPauses = 32768;
constexpr std::size_t workOfLayout = 256;
constexpr std::size_t charactersPerWork = 16;

/// A letter of each script, beside Latin, whose characters stand one after the other whatever their neighbours are.
/// Digits, blanks and signs among them are drawn in the font that the script gets.
constexpr std::array<char16_t, 6> scriptLetters{u'\u03B1', u'\u0430', u'\u4E00', u'\u3042', u'\u30A2', u'\uAC00'};

bool isSimpleScript(QChar::Script script) {
    switch (script) {
    case QChar::Script_Common:
    case QChar::Script_Latin:
    case QChar::Script_Greek:
    case QChar::Script_Cyrillic:
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Hangul:
        return true;
    default:
        return false;
    }
}

/// A character that takes the same room wherever it stands and is always drawn from left to right.
bool isSimple(QChar character) {
    const bool leftToRight = character.direction() == QChar::DirL || character.direction() == QChar::DirEN ||
                             character.direction() == QChar::DirES || character.direction() == QChar::DirET ||
                             character.direction() == QChar::DirCS || character.direction() == QChar::DirON;
    if (character == u' ')
        return true;
    if (!leftToRight || !isSimpleScript(character.script()) || character.isSurrogate())
        return false;
    // Parts of Hangul syllables join.
    if (character.script() == QChar::Script_Hangul && (character < QChar(0xAC00) || character > QChar(0xD7A3)))
        return false;
    return character.isLetterOrNumber() || character.isPunct() || character.isSymbol();
}

/// True when widths are sums in this font: nothing brings characters closer or joins them.
bool isAdditive(const QFont &font) {
    return !font.kerning() && (font.styleStrategy() & QFont::PreferNoShaping) != 0 && font.letterSpacing() == 0 &&
           font.wordSpacing() == 0 && font.capitalization() == QFont::MixedCase;
}

int toColumnWidth(std::uint64_t advance) {
    const qreal twips = std::round(static_cast<qreal>(advance) / unitsPerPixel * twipsPerPixel) + twipsBesideText;
    return static_cast<int>(std::min<qreal>(twips, std::numeric_limits<int>::max()));
}

std::string_view bytesOf(const PackedTexts::View &text) {
    return {text.bytes, std::size_t{text.size} << (text.wide ? 1 : 0)};
}

} // namespace

ColumnMeasure::ColumnMeasure(const QFont &font, const QPaintDevice *device)
    : m_metrics(font, device)
    , m_additive(isAdditive(font)) {
    for (std::size_t code = 0; code < m_narrow.size(); ++code) {
        const QChar character(static_cast<char16_t>(code));
        const bool simple = m_additive && isSimple(character);
        m_narrow[code] = simple ? laidOut(QStringView(&character, 1)) : unbounded;
    }
}

ColumnMeasure::Advance ColumnMeasure::laidOut(QStringView text) const {
    const qreal width = m_metrics.horizontalAdvance(text.toString());
    return static_cast<Advance>(std::llround(std::max(width, 0.0) * unitsPerPixel));
}

ColumnMeasure::Advance ColumnMeasure::measured(QStringView text) {
    ++m_layouts;
    return laidOut(oneLine(u' ' + text.toString()));
}

int ColumnMeasure::textWidth(QStringView text) {
    return toColumnWidth(measured(text));
}

ColumnMeasure::Advance ColumnMeasure::narrowBound(const PackedTexts::View &text) const {
    Advance sum = m_narrow[u' '];
    for (std::uint32_t i = 0; i < text.size; ++i)
        sum += m_narrow[static_cast<unsigned char>(text.bytes[i])];
    return sum;
}

ColumnMeasure::Advance ColumnMeasure::wideBound(const PackedTexts::View &text) {
    Advance sum = wideAdvance(u' ');
    for (std::size_t i = 0; i < text.size && sum < unbounded; ++i) {
        char16_t unit = 0;
        std::memcpy(&unit, text.bytes + i * sizeof unit, sizeof unit);
        sum += wideAdvance(unit);
    }
    return sum;
}

ColumnMeasure::Advance ColumnMeasure::wideAdvance(char16_t unit) {
    if (!m_additive)
        return unbounded;
    const auto known = m_wide.find(unit);
    if (known != m_wide.end())
        return known->second;
    return m_wide.emplace(unit, computeAdvance(unit)).first->second;
}

ColumnMeasure::Advance ColumnMeasure::computeAdvance(char16_t unit) const {
    const QChar character(unit);
    if (!isSimple(character))
        return unbounded;
    Advance widest = laidOut(QStringView(&character, 1));
    if (character.script() != QChar::Script_Common)
        return widest;
    for (const char16_t letter : scriptLetters) {
        const std::array<char16_t, 2> pair{letter, unit};
        const Advance together = laidOut(QStringView(pair));
        const Advance alone = laidOut(QStringView(pair).first(1));
        widest = std::max(widest, together > alone ? together - alone : 0);
    }
    return widest;
}

int ColumnMeasure::columnWidth(QStringView header, const PackedTexts &texts, const Pause &pause) {
    Advance widest = measured(header);
    std::unordered_set<std::string_view> measuredNarrow;
    std::unordered_set<std::string_view> measuredWide;
    QString text;
    std::size_t work = 0;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (++work >= workBetweenPauses) {
            work = 0;
            if (pause)
                pause();
        }
        const PackedTexts::View view = texts.view(i);
        work += view.size / charactersPerWork;
        if ((view.wide ? wideBound(view) : narrowBound(view)) <= widest)
            continue;
        if (!(view.wide ? measuredWide : measuredNarrow).insert(bytesOf(view)).second)
            continue;
        texts.read(i, text);
        widest = std::max(widest, measured(text));
        work += workOfLayout;
    }
    return toColumnWidth(widest);
}

void measureColumns(Grid &grid, const QFont &font, int firstColumn, const ColumnMeasure::Pause &pause) {
    ColumnMeasure measure(font, &grid);
    for (int column = std::max(firstColumn, 0); column < grid.Cols(); ++column) {
        if (grid.ColWidth(column) < 1)
            continue;
        // The fixed column has no texts.
        const int width = column == 0
                              ? measure.textWidth({})
                              : measure.columnWidth(grid.TextMatrix(0, column), grid.texts().column(column), pause);
        grid.setColWidth(column, width);
    }
}

} // namespace qir
