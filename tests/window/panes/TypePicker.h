#pragma once

#include "dialogs/CaricaTipi.h"
#include "dialogs/frmListaStringhePlain.h"
#include "platform/list/ListBox.h"
#include "tests/window/DialogScript.h"

#include <QDialog>

#include <functional>

namespace qir::test {

/// A control of a dialog by its name; a name that is not there ends the test program.
template<class Control>
Control &control(QWidget &dialog, const QString &name) {
    auto *found = dialog.findChild<Control *>(name);
    if (found == nullptr)
        qFatal("no control %s", qPrintable(name));
    return *found;
}

/// The picker with all field types, line `selected` selected, answered by `act`.
inline QString pick(int selected, const std::function<void(QDialog &, ListBox &)> &act) {
    DialogScript script;
    frmListaStringhePlain form(nullptr);
    form.setWindowTitle(QStringLiteral("Tipi"));
    CaricaTipi(form.valori_discreti());
    form.valori_discreti().setListIndex(selected);
    sceltaLista().index = 1;
    script.expect([&](QDialog &dialog) {
        const QString name = dialog.objectName();
        act(dialog, form.valori_discreti());
        return name == u"frmListaStringhePlain" ? QString() : QStringLiteral("the dialog is named ") + name;
    });
    form.exec();
    return script.problems();
}

} // namespace qir::test
