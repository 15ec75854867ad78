#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace qir {

/// A regular expression as a table of states that a text is led through byte by byte, each byte looked at once: tells
/// whether a text of ASCII holds a match, many times faster than a search that tries and goes back. Only for
/// expressions of literals, classes, groups, alternatives, repetitions and the anchors ^ and $; nothing is made of any
/// other.
class TextAutomaton {
public:
    struct Options {
        bool matchCase = false;
        bool whole = false; ///< The whole text must match.
        /// What such a table cannot tell, as what stands around a place or what was taken before, counts as true: no
        /// match is missed, but some texts without one are hit too.
        bool wider = false;
    };

    /// `pattern` must be a valid regular expression. Nothing where it holds something else, or would need many states.
    static std::optional<TextAutomaton> of(const QString &pattern, Options options);

    /// The same as a QRegularExpression says of a text whose bytes all are below 128; of a wider one True wherever that
    /// says so.
    bool hits(const char *text, std::size_t size) const;

private:
    friend class AutomatonBuilder;

    static constexpr std::size_t codes = 128;
    using StateNumber = std::uint16_t;

    struct State {
        std::array<StateNumber, codes> next{};
        bool hits = false;      ///< Whatever follows.
        bool hitsAtEnd = false; ///< Where the text ends here.
    };

    std::vector<State> m_states; // the first one is where a text begins
    bool m_whole = false;
};

} // namespace qir
