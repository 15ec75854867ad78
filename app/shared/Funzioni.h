#pragma once

#include "db/QirDatabase.h"

#include <QString>

#include <optional>

QT_BEGIN_NAMESPACE
class QLabel;
class QWidget;
QT_END_NAMESPACE

namespace qir {

class Grid;
class ListBox;

/// The program's name as windows show it.
QString applicationTitle();

/// Fills a table list from a component: a line each, item data = table number from 1. The line position that was
/// selected is selected again when it still exists, else the first line.
void CaricaListaTabelle(const QirDatabase &database, ListBox &lista);

/// The header of a database file as the password peek reads it: at most its first four bytes. Nothing when the file
/// is missing, too short or does not begin with a decimal header length.
std::optional<QByteArray> LeggiIntestazione(const QString &fileName);

/// The value of the digit at a header position; `error` is 1 on failure (the result is 0 then), 0 on success.
int LeggiByteIntestazione(const QString &fileName, int position, int &error);

/// True when the header says that the database is password-protected. Any failure to read it says it is not.
bool DatabaseProtetto(const QString &fileName);

/// True when something of that name exists whose length can be read; the name reaches it ignoring case.
bool EsisteFile(const QString &fileName);

/// The filter of the open and save dialogs: descriptions and patterns in turn.
QString databaseFileFilter();

enum class FileDialogAction { Open = 1, Save = 2 };

/// Shows the file dialog and gives the chosen name, trimmed and in upper case, "" after a cancel. The current folder
/// stays. `kind` is the extension whose filter comes first. The place chosen is remembered for the name. A name to save
/// under that would replace a file which the dialog did not show as existing is refused with a message and counts as no
/// choice.
QString MostraDialogoFile(QWidget *parent, FileDialogAction action, const QString &title,
                          const QString &defaultExtension, const QString &initialFolder, const QString &initialName,
                          const QString &filter, const QString &kind = {});

/// The name of a file that was chosen by its path in another way than the dialog, as the dialog would have given it.
QString nomeScelto(const QString &path);

/// Gives every column of the grid from `firstColumn` on that is at least 1 twip wide the width of its widest text,
/// header included, measured in the grid's font, which the label takes over. Yields.
void MisuraColonne(QLabel &label, Grid &grid, int firstColumn);

/// Asks whether the changes of a component are to be saved, if there is a component, it has a file name and it has
/// changed. False: the user answered No. Nothing is saved here.
bool ChiediSalvataggio(QWidget *parent, const QirDatabase &database);

} // namespace qir
