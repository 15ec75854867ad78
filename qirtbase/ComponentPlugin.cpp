#include "qirtbase/ComponentPlugin.h"

#include "qirtbase/clsQirDatabase.h"

using namespace Qt::StringLiterals;

namespace qir {

QObject *ComponentPlugin::CreateInstance(const QString &progId) {
    if (progId != u"QIRTBase.clsQirDatabase"_s)
        return nullptr;
    return new clsQirDatabase;
}

} // namespace qir
