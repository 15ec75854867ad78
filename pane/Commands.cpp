#include "pane/Commands.h"

namespace qir {

const char *commandName(Command command) {
    static constexpr const char *names[] = {
#define QIR_COMMAND_NAME(name) #name,
        QIR_COMMANDS(QIR_COMMAND_NAME)
#undef QIR_COMMAND_NAME
    };
    return names[static_cast<int>(command)];
}

} // namespace qir
