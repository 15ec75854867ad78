#pragma once

#include "dialogs/KeyPreviewDialog.h"

#include <QString>
#include <QVariant>

#include <array>

QT_BEGIN_NAMESPACE
class QPushButton;
QT_END_NAMESPACE

namespace qir {

class ListBox;

/// What the list picker and its callers share. There is one record. The picker's close box writes nothing to it, and a
/// cancel leaves the item data as it was: callers tell a cancel by the index alone.
struct SceltaLista {
    QString text;         ///< Of the chosen item; "" after a cancel.
    int index = -1;       ///< Position of the chosen item from 0; -1 after a cancel. Callers set it before they ask.
    QVariant itemData{0}; ///< A 32-bit integer.
};

SceltaLista &sceltaLista();

/// Shows a list of which one item may be picked. The caller sets the caption, fills the list, sets the chosen index of
/// sceltaLista() to another value than -1, shows the window modally and reads the record.
class frmListaStringhePlain : public KeyPreviewDialog {
    Q_OBJECT

public:
    explicit frmListaStringhePlain(QWidget *parent);

    ListBox &valori_discreti() { return *m_list; }

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    bool Form_KeyDown(const QKeyEvent &event, const QObject *focused) override;

private:
    /// Enter takes the choice if there is one; true when the key was that.
    bool Form_KeyPress(const QKeyEvent &event);
    void valori_discreti_DblClick();
    void cmd_Click(int Index);
    void takeChoice();
    /// The cancel.
    void uscita_frmListaStringhePlain();

    ListBox *m_list;
    std::array<QPushButton *, 2> cmd{}; ///< OK, Cancel.
};

} // namespace qir
