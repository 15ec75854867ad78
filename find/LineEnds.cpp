#include "find/LineEnds.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostPairs = 4'000'000; // of lines that are looked at to find those that stay

/// Where a document of lines ends them: the last two are noncharacters that it uses itself.
bool endsLine(QChar character) {
    return character == u'\r' || character == u'\n' || character == QChar::ParagraphSeparator ||
           character == QChar(0xfdd0) || character == QChar(0xfdd1);
}

/// Which line of an old list each line of a new one is, or stands in the place of; -1 for lines that came in between.
class LinePairs {
public:
    LinePairs(const QStringList &before, const QStringList &after)
        : m_before(before)
        , m_after(after)
        , m_pairs(static_cast<std::size_t>(after.size()), -1) {}

    std::vector<qsizetype> take() {
        const qsizetype shorter = std::min(m_before.size(), m_after.size());
        qsizetype first = 0;
        while (first < shorter && m_before[first] == m_after[first])
            m_pairs[static_cast<std::size_t>(first)] = first, ++first;
        qsizetype last = 0; // how many lines from the end
        while (last < shorter - first && m_before[m_before.size() - 1 - last] == m_after[m_after.size() - 1 - last]) {
            ++last;
            m_pairs[static_cast<std::size_t>(m_after.size() - last)] = m_before.size() - last;
        }
        pairMiddle({first, m_before.size() - last}, {first, m_after.size() - last});
        return std::move(m_pairs);
    }

private:
    struct Stretch {
        qsizetype first;
        qsizetype end;
        qsizetype size() const { return end - first; }
    };

    /// Pairs the lines of a longest common sequence, and those between them one by one.
    void pairMiddle(Stretch before, Stretch after) {
        const qsizetype width = after.size() + 1;
        if (before.size() == 0 || after.size() == 0 || before.size() > mostPairs / width) {
            pairInTurn(before, after);
            return;
        }
        // Lengths of the longest common sequence from a pair of lines on.
        std::vector<std::int32_t> lengths(static_cast<std::size_t>((before.size() + 1) * width));
        const auto length = [&](qsizetype one, qsizetype other) -> std::int32_t & {
            return lengths[static_cast<std::size_t>((one - before.first) * width + other - after.first)];
        };
        for (qsizetype one = before.end - 1; one >= before.first; --one) {
            for (qsizetype other = after.end - 1; other >= after.first; --other)
                length(one, other) = m_before[one] == m_after[other]
                                         ? length(one + 1, other + 1) + 1
                                         : std::max(length(one + 1, other), length(one, other + 1));
        }
        Stretch oldGap{before.first, before.first};
        Stretch newGap{after.first, after.first};
        while (oldGap.end < before.end && newGap.end < after.end) {
            if (m_before[oldGap.end] == m_after[newGap.end]) {
                pairInTurn(oldGap, newGap);
                m_pairs[static_cast<std::size_t>(newGap.end)] = oldGap.end;
                oldGap.first = ++oldGap.end;
                newGap.first = ++newGap.end;
            } else if (length(oldGap.end + 1, newGap.end) >= length(oldGap.end, newGap.end + 1)) {
                ++oldGap.end;
            } else {
                ++newGap.end;
            }
        }
        pairInTurn({oldGap.first, before.end}, {newGap.first, after.end});
    }

    void pairInTurn(Stretch before, Stretch after) {
        for (qsizetype i = 0; i < std::min(before.size(), after.size()); ++i)
            m_pairs[static_cast<std::size_t>(after.first + i)] = before.first + i;
    }

    const QStringList &m_before;
    const QStringList &m_after;
    std::vector<qsizetype> m_pairs;
};

} // namespace

LineEnds::LineEnds(const QString &text, QStringList lines)
    : m_lines(std::move(lines))
    , m_usual(u"\n"_s) {
    bool usualKnown = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!endsLine(text[i]))
            continue;
        const bool two = text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n';
        m_ends.append(text.mid(i, two ? 2 : 1));
        i += two ? 1 : 0;
        if (!usualKnown && (m_ends.last()[0] == u'\r' || m_ends.last()[0] == u'\n')) {
            m_usual = m_ends.last();
            usualKnown = true;
        }
    }
}

QString LineEnds::joined(const QStringList &edited) const {
    const std::vector<qsizetype> pairs = LinePairs(m_lines, edited).take();
    QString text;
    for (qsizetype line = 0; line < edited.size(); ++line) {
        text += edited[line];
        if (line + 1 < edited.size())
            text += m_ends.value(pairs[static_cast<std::size_t>(line)], m_usual);
    }
    return text;
}

} // namespace qir
