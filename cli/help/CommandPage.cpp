#include "cli/help/CommandPage.h"

#include <CLI/CLI.hpp>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

QString text(const std::string &bytes) {
    return QString::fromStdString(bytes);
}

/// "FILE:{a,b}" is how CLI11 says that it takes one of a few.
QStringList choicesOf(const QString &typeName) {
    const qsizetype open = typeName.indexOf(u'{');
    if (open < 0 || !typeName.endsWith(u'}'))
        return {};
    return typeName.sliced(open + 1).chopped(1).split(u',');
}

CommandWord wordOf(const CLI::Option &option) {
    CommandWord word;
    word.name = text(option.get_name());
    word.description = text(option.get_description());
    word.choices = choicesOf(text(option.get_type_name()));
    word.isRequired = option.get_required();
    word.isRepeated =
        option.get_expected_max() > 1 || option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
    if (word.isOption() && option.get_expected_max() > 0 && option.get_type_size() > 0)
        word.value = word.choices.isEmpty() ? text(option.get_type_name()) : u"WORD"_s;
    if (word.name.contains(u','))
        word.name = u"--"_s + text(option.get_lnames().front());
    return word;
}

CommandPage pageOf(const CLI::App &app) {
    CommandPage page{text(app.get_name()), text(app.get_description()), text(app.get_footer()), {}};
    for (const CLI::Option *option : app.get_options())
        page.words.push_back(wordOf(*option));
    std::stable_partition(page.words.begin(), page.words.end(),
                          [](const CommandWord &word) { return !word.isOption(); });
    return page;
}

std::vector<CommandWord> selected(const std::vector<CommandWord> &words, bool options) {
    std::vector<CommandWord> found;
    std::ranges::copy_if(words, std::back_inserter(found),
                         [&](const CommandWord &word) { return word.isOption() == options; });
    return found;
}

} // namespace

std::vector<CommandWord> CommandPage::arguments() const {
    return selected(words, false);
}

std::vector<CommandWord> CommandPage::options() const {
    return selected(words, true);
}

QString CommandPage::synopsis() const {
    QString line = name == u"qirdb" ? u"qirdb [OPTIONS] COMMAND"_s : u"qirdb "_s + name + u" [OPTIONS]"_s;
    for (const CommandWord &argument : arguments()) {
        const QString more = argument.isRepeated ? argument.name + u".."_s : argument.name;
        line += argument.isRequired ? u' ' + more : u" ["_s + more + u']';
    }
    return line;
}

std::vector<CommandPage> commandPages(const CLI::App &program) {
    std::vector<CommandPage> pages;
    for (const CLI::App *command : program.get_subcommands([](const CLI::App *) { return true; }))
        pages.push_back(pageOf(*command));
    return pages;
}

CommandPage programPage(const CLI::App &program) {
    return pageOf(program);
}

} // namespace qir
