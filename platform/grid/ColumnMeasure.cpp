#include "platform/grid/ColumnMeasure.h"

#include "base/NumberText.h"
#include "platform/controls/Twips.h"
#include "platform/grid/CellTextDrawing.h"
#include "platform/grid/Grid.h"

#include <QString>

#include <algorithm>
#include <bit>
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
    for (char digit = '0'; digit <= '9'; ++digit)
        m_digit = std::max(m_digit, m_narrow[static_cast<unsigned char>(digit)]);
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

ColumnMeasure::Advance ColumnMeasure::narrowBound(QByteArrayView latin1) const {
    Advance sum = m_narrow[u' '];
    for (const char character : latin1)
        sum += m_narrow[static_cast<unsigned char>(character)];
    return sum;
}

ColumnMeasure::Advance ColumnMeasure::narrowBound(const PackedTexts::View &text) const {
    return narrowBound(QByteArrayView(text.bytes, text.size));
}

ColumnMeasure::Advance ColumnMeasure::bound(QStringView text) {
    const bool wide = std::ranges::any_of(text, [](QChar unit) { return unit.unicode() > 0xFF; });
    Advance sum = wide ? wideAdvance(u' ') : m_narrow[u' '];
    for (qsizetype i = 0; i < text.size() && sum < unbounded; ++i)
        sum += wide ? wideAdvance(text[i].unicode()) : m_narrow[text[i].unicode()];
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

class ColumnMeasure::Widest {
public:
    Widest(ColumnMeasure &measure, QStringView header, const Pause &pause)
        : m_measure(measure)
        , m_widest(measure.measured(header))
        , m_pause(pause) {}

    Advance advance() const { return m_widest; }

    void add(const CellStretch &stretch) {
        for (const auto &[index, text] : stretch.typed())
            addText(text);
        if (stretch.own())
            addTexts(stretch.texts());
        else if (stretch.block().isText())
            addTexts(stretch);
        else
            addNumbers(stretch);
    }

private:
    void worked(std::size_t work) {
        m_work += work;
        if (m_work < workBetweenPauses)
            return;
        m_work = 0;
        if (m_pause)
            m_pause();
    }

    void measure(QStringView text) {
        m_widest = std::max(m_widest, m_measure.measured(text));
        worked(workOfLayout);
    }

    void addText(QStringView text) {
        if (m_measure.bound(text) > m_widest)
            measure(text);
    }

    void addTexts(const PackedTexts &texts) {
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const PackedTexts::View view = texts.view(i);
            worked(1 + view.size / charactersPerWork);
            if ((view.wide ? m_measure.wideBound(view) : m_measure.narrowBound(view)) <= m_widest)
                continue;
            if (!(view.wide ? m_wide : m_narrow).insert(bytesOf(view)).second)
                continue;
            texts.read(i, m_text);
            measure(m_text);
        }
    }

    /// Texts in UTF-8, where nothing was typed over them.
    void addTexts(const CellStretch &stretch) {
        for (qsizetype i = 0; i < stretch.block().count(); ++i) {
            const QByteArrayView bytes = stretch.block().textBytes(i);
            worked(1 + static_cast<std::size_t>(bytes.size()) / charactersPerWork);
            const bool ascii =
                std::ranges::all_of(bytes, [](char byte) { return static_cast<signed char>(byte) >= 0; });
            if ((ascii && m_measure.narrowBound(bytes) <= m_widest) || isTyped(stretch, i))
                continue;
            stretch.block().readText(i, m_text);
            if ((!ascii && m_measure.bound(m_text) <= m_widest) ||
                !m_utf8.insert({bytes.data(), static_cast<std::size_t>(bytes.size())}).second)
                continue;
            measure(m_text);
        }
    }

    void addNumbers(const CellStretch &stretch) {
        const ColumnBlock &block = stretch.block();
        for (qsizetype i = 0; i < block.count(); ++i) {
            worked(1);
            const double number = block.number(i);
            if (isNoWider(number) || isTyped(stretch, i))
                continue;
            std::array<char, numberTextCapacity> text{};
            const QByteArrayView digits(text.data(), formatNumber(text.data(), number));
            if (m_measure.narrowBound(digits) <= m_widest ||
                !m_numbers.insert(std::bit_cast<std::uint64_t>(number)).second)
                continue;
            block.readText(i, m_text);
            measure(m_text);
        }
    }

    /// True when the number's text is certainly no wider than what was found: where as many decimals as there is room
    /// for give the number exactly, it has no more of them. Makes no text of it.
    bool isNoWider(double number) const {
        static constexpr std::array<double, 16> powers{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                       1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
        const double size = std::abs(number);
        if (size >= powers.back()) // written with an exponent
            return false;
        Advance around = m_measure.m_narrow[u' '];
        if (std::signbit(number))
            around += m_measure.m_narrow[u'-'];
        std::size_t digits = 1;
        while (size >= powers[digits])
            ++digits;
        const Advance whole = around + digits * m_measure.m_digit;
        if (size == std::trunc(size))
            return whole <= m_widest;
        const Advance withPoint = whole + m_measure.m_narrow[u'.'];
        if (withPoint > m_widest || size < 1e-5)
            return false;
        const std::size_t decimals =
            std::min<std::size_t>((m_widest - withPoint) / m_measure.m_digit, powers.size() - 1 - digits);
        return std::nearbyint(size * powers[decimals]) / powers[decimals] == size;
    }

    static bool isTyped(const CellStretch &stretch, qsizetype index) {
        return !stretch.typed().empty() && stretch.typed().contains(static_cast<std::size_t>(index));
    }

    ColumnMeasure &m_measure;
    Advance m_widest;
    const Pause &m_pause;
    std::size_t m_work = 0;
    QString m_text;
    // What was laid out already: texts by their bytes, which stay where they are as long as this lives.
    std::unordered_set<std::string_view> m_narrow;
    std::unordered_set<std::string_view> m_wide;
    std::unordered_set<std::string_view> m_utf8;
    std::unordered_set<std::uint64_t> m_numbers; // by their bits: 0 and -0 are two texts
};

int ColumnMeasure::columnWidth(QStringView header, const CellColumn &column, const Pause &pause) {
    Widest widest(*this, header, pause);
    for (const CellStretch &stretch : column.stretches())
        widest.add(stretch);
    return toColumnWidth(widest.advance());
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
