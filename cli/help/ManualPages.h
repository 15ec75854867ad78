#pragma once

#include "cli/help/CommandPage.h"

#include <QByteArray>

namespace qir {

/// The manual page of the program, and that of a command, for man.
QByteArray programManual(const CommandPage &program, const std::vector<CommandPage> &commands, const QString &version);
QByteArray commandManual(const CommandPage &command, const QString &version);

} // namespace qir
