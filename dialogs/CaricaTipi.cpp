#include "dialogs/CaricaTipi.h"

#include "db/FieldTypes.h"
#include "platform/list/ListBox.h"

namespace qir {

void CaricaTipi(ListBox &lista) {
    lista.clear();
    for (const FieldTypeName &type : fieldTypeNames) {
        lista.addItem(QString::fromLatin1(type.name));
        lista.setItemData(lista.NewIndex(), static_cast<int>(type.code));
    }
}

} // namespace qir
