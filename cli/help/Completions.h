#pragma once

#include "cli/help/CommandPage.h"

#include <QByteArray>

namespace qir {

/// What each shell needs to complete a command line of the program: commands, options, the words that an argument or
/// option may be, and else the names of files.
QByteArray bashCompletion(const CommandPage &program, const std::vector<CommandPage> &commands);
QByteArray zshCompletion(const CommandPage &program, const std::vector<CommandPage> &commands);
QByteArray fishCompletion(const CommandPage &program, const std::vector<CommandPage> &commands);

} // namespace qir
