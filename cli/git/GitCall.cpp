#include "cli/Commands.h"
#include "cli/WholeFile.h"
#include "cli/tables/TextTable.h"

#include <string_view>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// What git starts this program for, as install-git has told it.
enum class GitCall { None, Diff, Textconv };

/// Of the arguments: the command, the option that says that it is for git, and "--", which older installations lack.
constexpr int optionPlace = 2;

GitCall gitCallOf(int argc, const char *const *argv) {
    if (argc <= optionPlace)
        return GitCall::None;
    const std::string_view command(argv[1]);
    const std::string_view option(argv[optionPlace]);
    if (command == "diff" && option == "--git")
        return GitCall::Diff;
    return command == "dump" && option == "--textconv" ? GitCall::Textconv : GitCall::None;
}

int firstOfGit(int argc, const char *const *argv) {
    constexpr int behind = optionPlace + 1;
    return argc > behind && std::string_view(argv[behind]) == "--" ? behind + 1 : behind;
}

} // namespace

void leaveToDifftool(int argc, const char *const *argv) {
    // That is what git difftool has git start for each file, were there no driver.
    constexpr const char *helper = "difftool--helper";
    if (gitCallOf(argc, argv) != GitCall::Diff ||
        !qEnvironmentVariable("GIT_EXTERNAL_DIFF").contains(QLatin1StringView(helper)))
        return;
    std::vector<std::string> words{"git", helper};
    for (int i = firstOfGit(argc, argv); i < argc; ++i)
        words.emplace_back(argv[i]);
    std::vector<char *> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string &word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    ::execvp(pointers.front(), pointers.data());
}

bool tellGit(int argc, const char *const *argv, const QString &reason) {
    const GitCall call = gitCallOf(argc, argv);
    if (call == GitCall::None)
        return false;
    const QString words =
        call == GitCall::Diff ? u"(cannot be compared: %1)"_s : u"(no database that can be shown: %1)"_s;
    print(printableText(words.arg(reason)).toUtf8() + '\n');
    return true;
}

} // namespace qir
