#include "pane/Commands.h"

#define QIR_NOTHING_OF(name)
#define QIR_NAME(name) #name,

namespace qir {

const char *commandName(Command command) {
    static constexpr const char *names[] = {QIR_COMMANDS(QIR_NOTHING_OF, QIR_NAME, )};
    return names[static_cast<int>(command)];
}

const char *menuName(Menu menu) {
    static constexpr const char *names[] = {QIR_COMMANDS(QIR_NAME, QIR_NOTHING_OF, )};
    return names[static_cast<int>(menu)];
}

} // namespace qir
