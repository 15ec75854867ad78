#include "cli/Subcommand.h"

#include "cli/Progress.h"
#include "cli/WholeFile.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace qir {

namespace {

/// Stands before a word that CLI11 would take for a list of words because of its brackets.
constexpr char mark = '\x1e';

/// An empty value is rather a variable of the shell that is not set than the wish for none.
CLI::Option *valued(CLI::Option *option) {
    const auto refuse = [](std::string &word) {
        return word.empty() ? std::string("a value is missing") : std::string();
    };
    return option->transform(CLI::Validator(refuse, ""));
}

CLI::Option *plain(CLI::Option *option) {
    const auto unmark = [](std::string &word) {
        if (word.starts_with(mark))
            word.erase(0, 1);
        return std::string();
    };
    return option->transform(CLI::Validator(unmark, ""));
}

/// All values of an option that may be given again and again; CLI11 lets a list take further words each time.
CLI::Option *repeated(CLI::App &command, const std::string &name, std::vector<std::string> &values,
                      const std::string &description) {
    return plain(command.add_option(name, values, description))
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

} // namespace

std::vector<std::string> markedWords(int count, const char *const *arguments) {
    std::vector<std::string> words;
    for (int i = count - 1; i >= 1; --i) {
        const std::string word(arguments[i]);
        words.push_back(word.starts_with('[') || word.starts_with(mark) ? mark + word : word);
    }
    return words;
}

Subcommand::Subcommand(CLI::App &program, const std::string &name, const std::string &description)
    : m_app(program.add_subcommand(name, description)) {}

Subcommand &Subcommand::argument(const std::string &name, std::string &value, const std::string &description) {
    plain(m_app->add_option(name, value, description))->required();
    return *this;
}

Subcommand &Subcommand::optional(const std::string &name, std::string &value, const std::string &description) {
    plain(m_app->add_option(name, value, description));
    return *this;
}

Subcommand &Subcommand::choice(const std::string &name, std::string &value, const std::vector<std::string> &words,
                               const std::string &description) {
    CLI::Option *option = m_app->add_option(name, value, description)->check(CLI::IsMember(words));
    if (name.starts_with('-'))
        option->capture_default_str();
    else
        option->required();
    return *this;
}

Subcommand &Subcommand::arguments(const std::string &name, std::vector<std::string> &values, int least,
                                  const std::string &description) {
    plain(m_app->add_option(name, values, description))->required(least > 0)->expected(least, -1);
    return *this;
}

Subcommand &Subcommand::flag(const std::string &name, bool &value, const std::string &description) {
    m_app->add_flag(name, value, description);
    return *this;
}

Subcommand &Subcommand::option(const std::string &name, std::string &value, const std::string &type,
                               const std::string &description) {
    valued(plain(m_app->add_option(name, value, description)))->type_name(type);
    return *this;
}

Subcommand &Subcommand::requiredOption(const std::string &name, std::string &value, const std::string &type,
                                       const std::string &description) {
    valued(plain(m_app->add_option(name, value, description)))->type_name(type)->required();
    return *this;
}

Subcommand &Subcommand::options(const std::string &name, std::vector<std::string> &values, const std::string &type,
                                const std::string &description) {
    repeated(*m_app, name, values, description)->type_name(type)->allow_extra_args(false);
    return *this;
}

Subcommand &Subcommand::lists(const std::string &name, std::vector<std::string> &values, const std::string &type,
                              const std::string &description) {
    repeated(*m_app, name, values, description)->type_name(type)->allow_extra_args();
    return *this;
}

Subcommand &Subcommand::passwordFile(std::string &file) {
    return option("--password-file", file, "FILE", "Read the password from the first line of this file");
}

Subcommand &Subcommand::passwordFiles(std::vector<std::string> &files, const std::string &order) {
    return options("--password-file", files, "FILE",
                   "Read the password from the first line of this file; given again, " + order);
}

Subcommand &Subcommand::escapeFormulas(bool &escape) {
    return flag("--escape-formulas", escape,
                "CSV only: put an apostrophe before texts that a spreadsheet would compute (=, +, -, @ in front)");
}

Subcommand &Subcommand::readingOptions(bool &json) {
    return flag("--json", json, "Print JSON, an object or value on each line").quiet();
}

Subcommand &Subcommand::quiet() {
    m_app->add_flag_callback(
        "--quiet",
        [] {
            silencePrinting();
            Progress::silence();
        },
        "Print nothing; the exit status is the answer");
    return *this;
}

Subcommand &Subcommand::exclusive(const std::vector<std::string> &names) {
    for (std::size_t i = 0; i < names.size(); ++i)
        for (std::size_t j = i + 1; j < names.size(); ++j)
            m_app->get_option(names[i])->excludes(m_app->get_option(names[j]));
    return *this;
}

Subcommand &Subcommand::note(const std::string &text) {
    m_app->footer(text);
    return *this;
}

void Subcommand::run(std::function<void()> work) {
    m_app->callback(std::move(work));
}

void Subcommand::run(Exit &exit, std::function<Exit()> work) {
    m_app->callback([&exit, work = std::move(work)] { exit = work(); });
}

std::string passwordFileOf(const std::vector<std::string> &files, std::size_t index) {
    return files.empty() ? std::string() : files[std::min(index, files.size() - 1)];
}

} // namespace qir
