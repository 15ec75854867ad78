#include "cli/NearestName.h"

#include <algorithm>
#include <numeric>
#include <vector>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// How many letters must be put in, left out, replaced or swapped with their neighbour to make one word of the other.
int distance(const QString &from, const QString &to) {
    const auto width = static_cast<std::size_t>(to.size()) + 1;
    std::vector<int> before(width);
    std::vector<int> above(width);
    std::vector<int> row(width);
    std::iota(above.begin(), above.end(), 0);
    for (qsizetype i = 1; i <= from.size(); ++i) {
        row[0] = static_cast<int>(i);
        for (qsizetype j = 1; j <= to.size(); ++j) {
            const auto k = static_cast<std::size_t>(j);
            const int replaced = above[k - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
            row[k] = std::min({above[k] + 1, row[k - 1] + 1, replaced});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1])
                row[k] = std::min(row[k], before[k - 2] + 1);
        }
        before.swap(above);
        above.swap(row);
    }
    return above.back();
}

} // namespace

QString nearestWords(const QString &word, const QStringList &names) {
    constexpr qsizetype longest = 64; // no slip of the fingers
    QString nearest;
    int least = std::max(1, static_cast<int>(word.size()) / 3) + 1;
    for (const QString &name : names) {
        if (word.size() > longest)
            break;
        if (const int found = distance(word.toLower(), name.toLower()); found < least) {
            least = found;
            nearest = name;
        }
    }
    return nearest.isEmpty() ? QString() : u"; did you mean \"%1\"?"_s.arg(nearest);
}

} // namespace qir
