#pragma once

#include "tests/monkey/Numbers.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace qir::test {

/// The steps of a run, all from its seed.
std::vector<Step> stepsOf(std::uint64_t seed, int count);

/// Steps as hexadecimal numbers with blanks between, and back.
QString asText(const std::vector<Step> &steps);
std::vector<Step> asSteps(const QString &text);

/// Runs monkeys, each in a process of its own, so that a crash is one monkey's and a failing run can be repeated with
/// fewer steps.
class MonkeyRuns {
public:
    explicit MonkeyRuns(bool fake)
        : m_fake(fake) {}

    /// Runs of `perRun` events until there were `events`, the n-th with seed + n. Prints what fails, shortened. False
    /// when a run failed.
    bool run(std::uint64_t seed, int events, int perRun);

private:
    struct Outcome {
        bool passed = false;
        QString how;           ///< It ended.
        QStringList lastLines; ///< Of what it did.
        QString output;        ///< Its standard error.
    };

    Outcome runOnce(const std::vector<Step> &steps) const;
    void report(std::uint64_t seed, const std::vector<Step> &steps, const Outcome &outcome) const;

    bool m_fake;
};

} // namespace qir::test
