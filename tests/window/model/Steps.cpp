#include "tests/window/model/Steps.h"

#include "tests/support/Shortening.h"

#include <QStringList>

#include <random>
#include <utility>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

struct KindOfStep {
    const char *name;
    unsigned weight; ///< How often, among all of them.
};

// In the order of Step::Kind. What goes through the file dialog takes long, so it comes seldom.
constexpr std::array<KindOfStep, Step::KindCount> kinds{{
    {"select a line", 12},
    {"select by key", 6},
    {"click a frame", 6},
    {"go to the other pane", 3},
    {"add a table", 4},
    {"rename the table", 4},
    {"remove the table", 3},
    {"clone the table", 6},
    {"add a field", 4},
    {"rename the field", 4},
    {"remove the field", 3},
    {"resize the field", 3},
    {"add a record", 6},
    {"remove the record", 6},
    {"clone the size", 6},
    {"clone an area", 6},
    {"edit a cell", 16},
    {"copy a block", 5},
    {"paste the block", 6},
    {"paste a text", 5},
    {"empty the block", 4},
    {"fill the block down", 4},
    {"sort by a column", 6},
    {"fit the columns", 1},
    {"compare again", 3},
    {"walk", 6},
    {"carry cells", 4},
    {"carry a record", 3},
    {"carry the table", 2},
    {"look at the differences", 3},
    {"look at a window", 1},
    {"open", 2},
    {"save", 4},
    {"save as", 1},
    {"close", 1},
    {"one pane", 1},
    {"two panes", 2},
    {"restart", 1},
    {"undo", 10},
    {"redo", 6},
    {"go to a state", 3},
    {"revert to what is saved", 1},
    {"paste all", 3},
    {"replace all", 2},
    {"go to a record", 1},
    {"walk over cells", 4},
    {"walk to the end", 2},
    {"carry cells and go on", 3},
    {"carry by key", 3},
}};

} // namespace

QString Step::text() const {
    QString text = QLatin1StringView(kinds.at(kind).name);
    for (const unsigned pick : picks)
        text += u' ' + QString::number(pick);
    return text;
}

std::optional<Step> Step::fromText(const QString &text) {
    Step step;
    QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    if (words.size() <= static_cast<qsizetype>(step.picks.size()))
        return std::nullopt;
    for (auto pick = step.picks.rbegin(); pick != step.picks.rend(); ++pick)
        *pick = words.takeLast().toUInt();
    const QString name = words.join(u' ');
    const auto found = std::find_if(kinds.begin(), kinds.end(),
                                    [&](const KindOfStep &k) { return name == QLatin1StringView(k.name); });
    if (found == kinds.end())
        return std::nullopt;
    step.kind = static_cast<Kind>(found - kinds.begin());
    return step;
}

QString Sequence::text() const {
    QStringList parts{QString::number(seed)};
    for (const Step &step : steps)
        parts.append(step.text());
    return parts.join(u"; "_s);
}

std::optional<Sequence> Sequence::fromText(const QString &text) {
    QStringList parts = text.split(u';');
    Sequence sequence;
    bool isNumber = false;
    sequence.seed = parts.takeFirst().trimmed().toULongLong(&isNumber);
    if (!isNumber)
        return std::nullopt;
    for (const QString &part : parts) {
        const std::optional<Step> step = Step::fromText(part);
        if (!step)
            return std::nullopt;
        sequence.steps.push_back(*step);
    }
    return sequence;
}

Sequence randomSequence(std::uint64_t seed, int count) {
    std::mt19937_64 random(seed);
    unsigned weights = 0;
    for (const KindOfStep &kind : kinds)
        weights += kind.weight;
    Sequence sequence{seed, {}};
    for (int i = 0; i < count; ++i) {
        Step step;
        auto left = static_cast<unsigned>(random() % weights);
        std::size_t kind = 0;
        while (left >= kinds.at(kind).weight)
            left -= kinds.at(kind++).weight;
        step.kind = static_cast<Step::Kind>(kind);
        for (unsigned &pick : step.picks)
            pick = static_cast<unsigned>(random() % 1000);
        sequence.steps.push_back(step);
    }
    return sequence;
}

Sequence shortened(Sequence sequence, const std::function<bool(const Sequence &)> &fails, int mostRuns) {
    sequence.steps = shortenedSteps<Step>(
        std::move(sequence.steps),
        [&fails, seed = sequence.seed](const std::vector<Step> &steps) {
            return fails({seed, steps});
        },
        mostRuns);
    return sequence;
}

} // namespace qir::test
