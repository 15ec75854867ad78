#include "find/search/ExpressionParser.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <utility>

namespace qir {

namespace {

constexpr std::size_t mostNodes = 2000;
constexpr int mostRepeats = 100;

AsciiCodes range(unsigned first, unsigned last) {
    AsciiCodes codes;
    for (unsigned code = first; code <= last; ++code)
        codes.set(code);
    return codes;
}

AsciiCodes digits() {
    return range('0', '9');
}

AsciiCodes wordCodes() {
    return digits() | range('a', 'z') | range('A', 'Z') | range('_', '_');
}

AsciiCodes blanks() {
    return range('\t', '\r') | range(' ', ' ');
}

AsciiCodes bothCases(AsciiCodes codes) {
    for (unsigned upper = 'A'; upper <= 'Z'; ++upper) {
        const unsigned lower = upper + ('a' - 'A');
        if (codes[upper] || codes[lower]) {
            codes.set(upper);
            codes.set(lower);
        }
    }
    return codes;
}

/// "\b" and the like behind their backslash: they take nothing.
bool isPlace(char code) {
    constexpr std::array places{'b', 'B', 'A', 'z', 'Z', 'G'};
    return std::ranges::find(places, code) != places.end();
}

} // namespace

int ExpressionParser::parse() {
    Part whole = alternatives();
    if (m_at < m_pattern.size())
        throw NotRegular();
    const int hit = add({ExpressionNode::Kind::Hits, {}, {}});
    join(whole, hit);
    return whole.first;
}

char ExpressionParser::peek(qsizetype ahead) const {
    if (m_at + ahead >= m_pattern.size())
        return 0;
    const char16_t unit = m_pattern[m_at + ahead].unicode();
    if (unit == 0 || unit >= asciiCodes)
        throw NotRegular();
    return static_cast<char>(unit);
}

char ExpressionParser::take() {
    const char code = peek();
    if (code == 0)
        throw NotRegular();
    ++m_at;
    return code;
}

bool ExpressionParser::takes(char code) {
    if (isAtEnd() || peek() != code)
        return false;
    ++m_at;
    return true;
}

int ExpressionParser::add(ExpressionNode node) {
    if (m_nodes.size() >= mostNodes)
        throw NotRegular();
    m_nodes.push_back(std::move(node));
    return static_cast<int>(m_nodes.size()) - 1;
}

void ExpressionParser::join(const Part &part, int to) {
    for (const int open : part.open)
        node(open).next.push_back(to);
}

ExpressionParser::Part ExpressionParser::nothing() {
    const int split = add({ExpressionNode::Kind::Splits, {}, {}});
    return {split, {split}};
}

ExpressionParser::Part ExpressionParser::single(ExpressionNode::Kind kind, const AsciiCodes &codes) {
    const int number = add({kind, codes, {}});
    return {number, {number}};
}

ExpressionParser::Part ExpressionParser::alternatives() {
    std::vector<Part> parts{sequence()};
    while (takes('|'))
        parts.push_back(sequence());
    if (parts.size() == 1)
        return parts.front();
    Part all = nothing();
    all.open.clear();
    for (const Part &part : parts) {
        node(all.first).next.push_back(part.first);
        all.open.insert(all.open.end(), part.open.begin(), part.open.end());
    }
    return all;
}

ExpressionParser::Part ExpressionParser::sequence() {
    Part all = nothing();
    while (!isAtEnd() && peek() != '|' && peek() != ')') {
        const Part part = repeated();
        join(all, part.first);
        all.open = part.open;
    }
    return all;
}

ExpressionParser::Part ExpressionParser::repeated() {
    const qsizetype start = m_at;
    const Part part = atom();
    int least = 1;
    int most = 1; // -1 without an end
    if (!takeRepeats(least, most))
        return part;
    if (m_nodes[static_cast<std::size_t>(part.first)].kind == ExpressionNode::Kind::Begins ||
        m_nodes[static_cast<std::size_t>(part.first)].kind == ExpressionNode::Kind::Ends)
        throw NotRegular();
    if (!takes('?') && takes('+'))
        mustBeWider(); // which gives nothing back
    const qsizetype end = m_at;
    // Each time is read once more, into nodes of its own.
    const auto again = [&] {
        m_at = start;
        const Part copy = atom();
        m_at = end;
        return copy;
    };
    Part all = nothing();
    for (int time = 0; time < least; ++time) {
        const Part copy = again();
        join(all, copy.first);
        all.open = copy.open;
    }
    if (most < 0) {
        const Part copy = again();
        const Part loop = single(ExpressionNode::Kind::Splits);
        join(all, loop.first);
        node(loop.first).next.push_back(copy.first);
        join(copy, loop.first);
        all.open = loop.open;
        return all;
    }
    std::vector<int> early;
    for (int time = least; time < most; ++time) {
        const Part copy = again();
        const Part option = single(ExpressionNode::Kind::Splits);
        join(all, option.first);
        node(option.first).next.push_back(copy.first);
        early.push_back(option.first);
        all.open = copy.open;
    }
    all.open.insert(all.open.end(), early.begin(), early.end());
    return all;
}

bool ExpressionParser::takeRepeats(int &least, int &most) {
    if (takes('*')) {
        least = 0;
        most = -1;
    } else if (takes('+')) {
        most = -1;
    } else if (takes('?')) {
        least = 0;
    } else if (!isAtEnd() && peek() == '{') {
        return takeCounts(least, most);
    } else {
        return false;
    }
    return true;
}

/// "{2}", "{2,}", "{2,3}"; a brace that begins none of these is a brace.
bool ExpressionParser::takeCounts(int &least, int &most) {
    const qsizetype end = m_pattern.indexOf(u'}', m_at);
    const QString inside = end < 0 ? QString() : m_pattern.mid(m_at + 1, end - m_at - 1);
    const QStringList numbers = inside.split(u',');
    const auto isNumber = [](const QString &text) {
        return !text.isEmpty() &&
               std::all_of(text.begin(), text.end(), [](QChar unit) { return unit >= u'0' && unit <= u'9'; });
    };
    if (numbers.size() > 2 || !isNumber(numbers[0]) ||
        (numbers.size() == 2 && !numbers[1].isEmpty() && !isNumber(numbers[1])))
        throw NotRegular(); // versions of the expressions differ in what they take for a count
    least = numbers[0].toInt();
    most = numbers.size() == 1 ? least : numbers[1].isEmpty() ? -1 : numbers[1].toInt();
    if (numbers[0].size() > 3 || least > mostRepeats || most > mostRepeats)
        throw NotRegular();
    m_at = end + 1;
    return true;
}

ExpressionParser::Part ExpressionParser::atom() {
    const char code = take();
    switch (code) {
    case '(':
        return group();
    case '[':
        return single(ExpressionNode::Kind::Takes, charClass());
    case '.':
        return single(ExpressionNode::Kind::Takes, ~range('\n', '\n'));
    case '^':
        return single(ExpressionNode::Kind::Begins);
    case '$':
        return single(ExpressionNode::Kind::Ends);
    case '\\':
        return behindBackslash();
    case '*':
    case '+':
    case '?':
    case '{':
        throw NotRegular();
    default:
        return single(ExpressionNode::Kind::Takes,
                      folded(range(static_cast<unsigned char>(code), static_cast<unsigned char>(code))));
    }
}

void ExpressionParser::mustBeWider() const {
    if (!m_wider)
        throw NotRegular();
}

ExpressionParser::Part ExpressionParser::group() {
    const std::size_t before = m_nodes.size();
    const bool around = takes('?') && !takes(':') && isAround();
    if (!isAtEnd() && peek() == '*')
        throw NotRegular();
    const Part inside = alternatives();
    if (!takes(')'))
        throw NotRegular();
    if (!around)
        return inside;
    m_nodes.resize(before);
    return nothing();
}

/// Behind "(?": true where the group looks at what stands around, and takes nothing.
bool ExpressionParser::isAround() {
    mustBeWider();
    if (takes('=') || takes('!'))
        return true;
    if (takes('>'))
        return false; // it gives nothing back
    takes('P');
    if (!takes('<'))
        throw NotRegular();
    if (takes('=') || takes('!'))
        return true;
    while (take() != '>') // a name
        if (isAtEnd())
            throw NotRegular();
    return false;
}

ExpressionParser::Part ExpressionParser::behindBackslash() {
    if (m_wider && peek() >= '1' && peek() <= '9') {
        while (!isAtEnd() && peek() >= '0' && peek() <= '9')
            take();
        return anything(); // what was taken before, whatever that was
    }
    if (m_wider && isPlace(peek())) {
        take();
        return nothing();
    }
    return single(ExpressionNode::Kind::Takes, folded(escaped()));
}

ExpressionParser::Part ExpressionParser::anything() {
    const Part loop = single(ExpressionNode::Kind::Splits);
    const Part any = single(ExpressionNode::Kind::Takes, ~AsciiCodes());
    node(loop.first).next.push_back(any.first);
    join(any, loop.first);
    return loop;
}

AsciiCodes ExpressionParser::folded(const AsciiCodes &codes) const {
    return m_matchCase ? codes : bothCases(codes);
}

/// Behind a backslash: a class, or a single character.
AsciiCodes ExpressionParser::escaped() {
    const char code = take();
    switch (code) {
    case 'd':
        return digits();
    case 'D':
        return ~digits();
    case 'w':
        return wordCodes();
    case 'W':
        return ~wordCodes();
    case 's':
        return blanks();
    case 'S':
        return ~blanks();
    case 't':
        return range('\t', '\t');
    case 'n':
        return range('\n', '\n');
    case 'r':
        return range('\r', '\r');
    case 'f':
        return range('\f', '\f');
    default:
        break;
    }
    if (wordCodes()[static_cast<unsigned char>(code)])
        throw NotRegular();
    return range(static_cast<unsigned char>(code), static_cast<unsigned char>(code));
}

AsciiCodes ExpressionParser::charClass() {
    const bool negated = takes('^');
    AsciiCodes codes;
    for (bool first = true; first || peek() != ']'; first = false) {
        const AsciiCodes from = classMember();
        if (peek() != '-' || peek(1) == ']') {
            codes |= from;
            continue;
        }
        take();
        const AsciiCodes to = classMember();
        if (from.count() != 1 || to.count() != 1)
            throw NotRegular();
        unsigned code = 0;
        while (!from[code])
            ++code;
        for (; !to[code]; ++code)
            codes.set(code);
        codes |= to;
    }
    take();
    codes = folded(codes);
    return negated ? ~codes : codes;
}

AsciiCodes ExpressionParser::classMember() {
    const char code = take();
    if (code == '[')
        throw NotRegular();
    return code == '\\' ? escaped() : range(static_cast<unsigned char>(code), static_cast<unsigned char>(code));
}

} // namespace qir
