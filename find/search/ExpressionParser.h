#pragma once

#include <QString>

#include <bitset>
#include <cstddef>
#include <vector>

namespace qir {

/// What cannot be told by a table of states: thrown while one is made.
struct NotRegular {};

/// The characters of ASCII that are meant.
constexpr std::size_t asciiCodes = 128;
using AsciiCodes = std::bitset<asciiCodes>;

/// A place in a regular expression; those that `next` leads to come after it.
struct ExpressionNode {
    enum class Kind { Takes, Splits, Begins, Ends, Hits };
    Kind kind = Kind::Hits;
    AsciiCodes codes;
    std::vector<int> next;
};

/// Reads a regular expression, and makes nodes of it.
class ExpressionParser {
public:
    /// A wider one takes for true what cannot be told by a table of states.
    ExpressionParser(const QString &pattern, bool matchCase, bool wider)
        : m_pattern(pattern)
        , m_matchCase(matchCase)
        , m_wider(wider) {}

    /// The number of the first node. Throws NotRegular.
    int parse();
    const std::vector<ExpressionNode> &nodes() const { return m_nodes; }

private:
    /// A part of the expression: from `first` on, and the nodes whose next one is still open.
    struct Part {
        int first;
        std::vector<int> open;
    };

    bool isAtEnd() const { return m_at >= m_pattern.size(); }
    char peek(qsizetype ahead = 0) const;
    char take();
    bool takes(char code);

    int add(ExpressionNode node);
    ExpressionNode &node(int number) { return m_nodes[static_cast<std::size_t>(number)]; }
    void join(const Part &part, int to);
    Part nothing();
    Part single(ExpressionNode::Kind kind, const AsciiCodes &codes = {});

    Part alternatives();
    Part sequence();
    Part repeated();
    bool takeRepeats(int &least, int &most);
    bool takeCounts(int &least, int &most);
    Part atom();
    void mustBeWider() const;
    Part group();
    bool isAround();
    Part behindBackslash();
    Part anything();

    AsciiCodes folded(const AsciiCodes &codes) const;
    AsciiCodes escaped();
    AsciiCodes charClass();
    AsciiCodes classMember();

    const QString m_pattern;
    const bool m_matchCase;
    const bool m_wider;
    qsizetype m_at = 0;
    std::vector<ExpressionNode> m_nodes;
};

} // namespace qir
