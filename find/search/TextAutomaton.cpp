#include "find/search/TextAutomaton.h"

#include "find/search/ExpressionParser.h"

#include <algorithm>
#include <map>
#include <utility>

namespace qir {

namespace {

constexpr std::size_t mostStates = 1000;
constexpr std::size_t mostSteps = 500'000; // from node to node while the states are made

} // namespace

/// Makes a state of each set of nodes that a text can have led to.
class AutomatonBuilder {
public:
    AutomatonBuilder(const QString &pattern, TextAutomaton::Options options)
        : m_parser(pattern, options.matchCase, options.wider)
        , m_first(m_parser.parse()) {
        m_automaton.m_whole = options.whole;
        rejectBehindEnd();
    }

    TextAutomaton build() {
        const Places start = reached({m_first}, true, false);
        numberOf(start, true);
        const std::vector<std::size_t> alike = firstAlike();
        for (std::size_t state = 0; state < m_automaton.m_states.size(); ++state) {
            for (std::size_t code = 0; code < asciiCodes; ++code) {
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

    const ExpressionNode &node(int number) const { return m_parser.nodes()[static_cast<std::size_t>(number)]; }

    /// For each code the first one that the same nodes take.
    std::vector<std::size_t> firstAlike() const {
        std::map<std::vector<bool>, std::size_t> known;
        std::vector<std::size_t> first(asciiCodes);
        for (std::size_t code = 0; code < asciiCodes; ++code) {
            std::vector<bool> taking;
            for (const ExpressionNode &each : m_parser.nodes())
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
            const ExpressionNode &each = node(number);
            const bool stays = each.kind == ExpressionNode::Kind::Takes || each.kind == ExpressionNode::Kind::Hits ||
                               (each.kind == ExpressionNode::Kind::Ends && !atEnd);
            if (stays)
                places.push_back(number);
            else if (each.kind != ExpressionNode::Kind::Begins || atStart)
                left.insert(left.end(), each.next.begin(), each.next.end());
        }
        std::ranges::sort(places);
        return places;
    }

    /// Behind an end stands nothing more that takes: a line feed could.
    void rejectBehindEnd() {
        for (const ExpressionNode &each : m_parser.nodes()) {
            if (each.kind != ExpressionNode::Kind::Ends)
                continue;
            for (const int place : reached(each.next, true, true))
                if (node(place).kind == ExpressionNode::Kind::Takes)
                    throw NotRegular();
        }
    }

    bool holdsHit(const Places &places) const {
        return std::ranges::any_of(places,
                                   [this](int place) { return node(place).kind == ExpressionNode::Kind::Hits; });
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
            if (node(place).kind == ExpressionNode::Kind::Takes && node(place).codes[code])
                next.insert(next.end(), node(place).next.begin(), node(place).next.end());
        if (!m_automaton.m_whole)
            next.push_back(m_first); // a match may begin anywhere
        const auto number = numberOf(reached(next, false, false), false);
        m_automaton.m_states[state].next.at(code) = number;
    }

    ExpressionParser m_parser;
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
