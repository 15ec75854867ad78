#include "cli/audit/AuditWorkers.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

TEST(AuditWorkersTest, AProcessThatDiedBetweenTwoFilesCostsNoFile) {
    const std::vector<AuditFile> files{{u"one"_s, {}}, {u"two"_s, {}}, {u"three"_s, {}}};
    const auto prepare = []() -> AuditWork {
        return [](const QString &file) {
            AuditResult result;
            result.file = file;
            result.error = QString::number(::getpid()); // for the test
            return result;
        };
    };
    QStringList taken;
    auditInParallel(files, 1, prepare, [&](const AuditResult &result) {
        EXPECT_EQ(result.state, AuditResult::State::Same) << result.error.toStdString();
        taken += result.file;
        const auto process = static_cast<id_t>(result.error.toInt());
        ASSERT_GT(process, 1U);
        ASSERT_EQ(::kill(static_cast<pid_t>(process), SIGKILL), 0);
        siginfo_t info{};
        ASSERT_EQ(::waitid(P_PID, process, &info, WEXITED | WNOWAIT), 0);
    });
    EXPECT_EQ(taken, (QStringList{u"one"_s, u"two"_s, u"three"_s}));
}

TEST(AuditWorkersTest, AFileThatEveryProcessDiesOfIsTrouble) {
    const auto prepare = []() -> AuditWork {
        return [](const QString &file) -> AuditResult {
            if (file == u"bad"_s)
                ::raise(SIGKILL);
            return {file, AuditResult::State::Same, {}, {}};
        };
    };
    std::vector<AuditResult::State> states;
    auditInParallel({{u"one"_s, {}}, {u"bad"_s, {}}, {u"three"_s, {}}}, 2, prepare,
                    [&](const AuditResult &result) { states.push_back(result.state); });
    EXPECT_EQ(states, (std::vector{AuditResult::State::Same, AuditResult::State::Trouble, AuditResult::State::Same}));
}

} // namespace

} // namespace qir
