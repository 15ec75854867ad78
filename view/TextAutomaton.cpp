#include "view/TextAutomaton.h"

#include <QStringList>

#include <algorithm>
#include <bitset>
#include <map>
#include <utility>

namespace qir {

namespace {

constexpr std::size_t codeCount = 128;
constexpr std::size_t mostNodes = 2000;
constexpr std::size_t mostStates = 1000;
constexpr int mostRepeats = 100;
constexpr std::size_t mostSteps = 500'000; // from node to node while the states are made

using Codes = std::bitset<codeCount>;

/// What cannot be told by such a table.
struct NotRegular {};

Codes range(unsigned first, unsigned last) {
    Codes codes;
    for (unsigned code = first; code <= last; ++code)
        codes.set(code);
    return codes;
}

Codes digits() {
    return range('0', '9');
}

Codes wordCodes() {
    return digits() | range('a', 'z') | range('A', 'Z') | range('_', '_');
}

Codes blanks() {
    return range('\t', '\r') | range(' ', ' ');
}

Codes bothCases(Codes codes) {
    for (unsigned upper = 'A'; upper <= 'Z'; ++upper) {
        const unsigned lower = upper + ('a' - 'A');
        if (codes[upper] || codes[lower]) {
            codes.set(upper);
            codes.set(lower);
        }
    }
    return codes;
}

/// A place in the expression; those that `next` leads to come after it.
struct Node {
    enum class Kind { Takes, Splits, Begins, Ends, Hits };
    Kind kind = Kind::Hits;
    Codes codes;
    std::vector<int> next;
};

/// A part of the expression: from `first` on, and the nodes whose next one is still open.
struct Part {
    int first;
    std::vector<int> open;
};

/// Reads an expression, and makes nodes of it.
class Parser {
public:
    Parser(const QString &pattern, bool matchCase)
        : m_pattern(pattern)
        , m_matchCase(matchCase) {}

    int parse() {
        Part whole = alternatives();
        if (m_at < m_pattern.size())
            throw NotRegular();
        const int hit = add({Node::Kind::Hits, {}, {}});
        join(whole, hit);
        return whole.first;
    }
    const std::vector<Node> &nodes() const { return m_nodes; }

private:
    bool isAtEnd() const { return m_at >= m_pattern.size(); }
    char peek(qsizetype ahead = 0) const {
        if (m_at + ahead >= m_pattern.size())
            return 0;
        const char16_t unit = m_pattern[m_at + ahead].unicode();
        if (unit == 0 || unit >= codeCount)
            throw NotRegular();
        return static_cast<char>(unit);
    }
    char take() {
        const char code = peek();
        if (code == 0)
            throw NotRegular();
        ++m_at;
        return code;
    }
    bool takes(char code) {
        if (isAtEnd() || peek() != code)
            return false;
        ++m_at;
        return true;
    }

    int add(Node node) {
        if (m_nodes.size() >= mostNodes)
            throw NotRegular();
        m_nodes.push_back(std::move(node));
        return static_cast<int>(m_nodes.size()) - 1;
    }
    Node &node(int number) { return m_nodes[static_cast<std::size_t>(number)]; }
    void join(const Part &part, int to) {
        for (const int open : part.open)
            node(open).next.push_back(to);
    }
    Part nothing() {
        const int split = add({Node::Kind::Splits, {}, {}});
        return {split, {split}};
    }
    Part single(Node::Kind kind, const Codes &codes = {}) {
        const int number = add({kind, codes, {}});
        return {number, {number}};
    }

    Part alternatives() {
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

    Part sequence() {
        Part all = nothing();
        while (!isAtEnd() && peek() != '|' && peek() != ')') {
            const Part part = repeated();
            join(all, part.first);
            all.open = part.open;
        }
        return all;
    }

    Part repeated() {
        const qsizetype start = m_at;
        const Part part = atom();
        int least = 1;
        int most = 1; // -1 without an end
        if (!takeRepeats(least, most))
            return part;
        if (m_nodes[static_cast<std::size_t>(part.first)].kind == Node::Kind::Begins ||
            m_nodes[static_cast<std::size_t>(part.first)].kind == Node::Kind::Ends)
            throw NotRegular();
        if (!takes('?') && !isAtEnd() && peek() == '+')
            throw NotRegular(); // which gives nothing back
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
            const Part loop = single(Node::Kind::Splits);
            join(all, loop.first);
            node(loop.first).next.push_back(copy.first);
            join(copy, loop.first);
            all.open = loop.open;
            return all;
        }
        std::vector<int> early;
        for (int time = least; time < most; ++time) {
            const Part copy = again();
            const Part option = single(Node::Kind::Splits);
            join(all, option.first);
            node(option.first).next.push_back(copy.first);
            early.push_back(option.first);
            all.open = copy.open;
        }
        all.open.insert(all.open.end(), early.begin(), early.end());
        return all;
    }

    bool takeRepeats(int &least, int &most) {
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
    bool takeCounts(int &least, int &most) {
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

    Part atom() {
        const char code = take();
        switch (code) {
        case '(':
            return group();
        case '[':
            return single(Node::Kind::Takes, charClass());
        case '.':
            return single(Node::Kind::Takes, ~range('\n', '\n'));
        case '^':
            return single(Node::Kind::Begins);
        case '$':
            return single(Node::Kind::Ends);
        case '\\':
            return single(Node::Kind::Takes, folded(escaped()));
        case '*':
        case '+':
        case '?':
        case '{':
            throw NotRegular();
        default:
            return single(Node::Kind::Takes,
                          folded(range(static_cast<unsigned char>(code), static_cast<unsigned char>(code))));
        }
    }

    Part group() {
        if (takes('?') && !takes(':'))
            throw NotRegular();
        if (!isAtEnd() && peek() == '*')
            throw NotRegular();
        const Part inside = alternatives();
        if (!takes(')'))
            throw NotRegular();
        return inside;
    }

    Codes folded(const Codes &codes) const { return m_matchCase ? codes : bothCases(codes); }

    /// Behind a backslash: a class, or a single character.
    Codes escaped() {
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

    Codes charClass() {
        const bool negated = takes('^');
        Codes codes;
        for (bool first = true; first || peek() != ']'; first = false) {
            const Codes from = classMember();
            if (peek() != '-' || peek(1) == ']') {
                codes |= from;
                continue;
            }
            take();
            const Codes to = classMember();
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

    Codes classMember() {
        const char code = take();
        if (code == '[')
            throw NotRegular();
        return code == '\\' ? escaped() : range(static_cast<unsigned char>(code), static_cast<unsigned char>(code));
    }

    const QString m_pattern;
    const bool m_matchCase;
    qsizetype m_at = 0;
    std::vector<Node> m_nodes;
};

} // namespace

/// Makes a state of each set of nodes that a text can have led to.
class AutomatonBuilder {
public:
    AutomatonBuilder(const QString &pattern, TextAutomaton::Options options)
        : m_parser(pattern, options.matchCase)
        , m_first(m_parser.parse()) {
        m_automaton.m_whole = options.whole;
        rejectBehindEnd();
    }

    TextAutomaton build() {
        const Places start = reached({m_first}, true, false);
        numberOf(start, true);
        const std::vector<std::size_t> alike = firstAlike();
        for (std::size_t state = 0; state < m_automaton.m_states.size(); ++state) {
            for (std::size_t code = 0; code < codeCount; ++code) {
                if (alike[code] == code)
                    follow(state, code);
                else
                    m_automaton.m_states[state].next.at(code) = m_automaton.m_states[state].next.at(alike[code]);
            }
        }
        return std::move(m_automaton);
    }

private:
    using Places = std::vector<int>;

    const Node &node(int number) const { return m_parser.nodes()[static_cast<std::size_t>(number)]; }

    /// For each code the first one that the same nodes take.
    std::vector<std::size_t> firstAlike() const {
        std::map<std::vector<bool>, std::size_t> known;
        std::vector<std::size_t> first(codeCount);
        for (std::size_t code = 0; code < codeCount; ++code) {
            std::vector<bool> taking;
            for (const Node &each : m_parser.nodes())
                taking.push_back(each.codes[code]);
            first[code] = known.try_emplace(std::move(taking), code).first->second;
        }
        return first;
    }

    void countSteps(std::size_t steps) {
        m_steps += steps;
        if (m_steps > mostSteps)
            throw NotRegular();
    }

    /// Where one gets from these without taking anything. A node that takes or hits is such a place.
    Places reached(const Places &from, bool atStart, bool atEnd) {
        std::vector<bool> seen(m_parser.nodes().size());
        Places left = from;
        Places places;
        while (!left.empty()) {
            countSteps(1);
            const int number = left.back();
            left.pop_back();
            if (seen[static_cast<std::size_t>(number)])
                continue;
            seen[static_cast<std::size_t>(number)] = true;
            const Node &each = node(number);
            const bool stays = each.kind == Node::Kind::Takes || each.kind == Node::Kind::Hits ||
                               (each.kind == Node::Kind::Ends && !atEnd);
            if (stays)
                places.push_back(number);
            else if (each.kind != Node::Kind::Begins || atStart)
                left.insert(left.end(), each.next.begin(), each.next.end());
        }
        std::ranges::sort(places);
        return places;
    }

    /// Behind an end stands nothing more that takes: a line feed could.
    void rejectBehindEnd() {
        for (const Node &each : m_parser.nodes()) {
            if (each.kind != Node::Kind::Ends)
                continue;
            for (const int place : reached(each.next, true, true))
                if (node(place).kind == Node::Kind::Takes)
                    throw NotRegular();
        }
    }

    bool holdsHit(const Places &places) const {
        return std::ranges::any_of(places, [this](int place) { return node(place).kind == Node::Kind::Hits; });
    }

    TextAutomaton::StateNumber numberOf(const Places &places, bool atStart) {
        const auto [known, isNew] =
            m_numbers.try_emplace({places, atStart}, static_cast<TextAutomaton::StateNumber>(m_places.size()));
        if (isNew) {
            if (m_places.size() >= mostStates)
                throw NotRegular();
            m_places.push_back(places);
            TextAutomaton::State state;
            state.hits = holdsHit(places);
            state.hitsAtEnd = holdsHit(reached(places, atStart, true));
            m_automaton.m_states.push_back(state);
        }
        return known->second;
    }

    void follow(std::size_t state, std::size_t code) {
        Places next;
        countSteps(m_places[state].size());
        for (const int place : m_places[state])
            if (node(place).kind == Node::Kind::Takes && node(place).codes[code])
                next.insert(next.end(), node(place).next.begin(), node(place).next.end());
        if (!m_automaton.m_whole)
            next.push_back(m_first); // a match may begin anywhere
        const auto number = numberOf(reached(next, false, false), false);
        m_automaton.m_states[state].next.at(code) = number;
    }

    Parser m_parser;
    int m_first;
    TextAutomaton m_automaton;
    std::size_t m_steps = 0;
    std::vector<Places> m_places; // of each state
    std::map<std::pair<Places, bool>, TextAutomaton::StateNumber> m_numbers;
};

std::optional<TextAutomaton> TextAutomaton::of(const QString &pattern, Options options) {
    try {
        return AutomatonBuilder(pattern, options).build();
    } catch (const NotRegular &) {
        return std::nullopt;
    }
}

bool TextAutomaton::hits(const char *text, std::size_t size) const {
    const State *state = &m_states.front();
    for (std::size_t at = 0; at < size; ++at) {
        if (!m_whole) {
            if (state->hits)
                return true;
            if (state->hitsAtEnd && at + 1 == size && text[at] == '\n')
                return true; // an end is also before a last line feed
        }
        state = &m_states[state->next[static_cast<unsigned char>(text[at])]];
    }
    return state->hits || state->hitsAtEnd;
}

} // namespace qir
