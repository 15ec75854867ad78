#pragma once

#include <QString>
#include <QVariant>

namespace qir {

/// Replaces every occurrence of `find` in `text`, ignoring case, until none is left. Does nothing when the
/// replacement itself holds the text to find (ignoring case): the replacing would never end.
void SostituisciTesto(QString &text, const QString &find, const QString &replacement);

/// The table name in a list line: without any " ?", then without any " !".
QString TogliMarcatori(const QString &entry);

/// The text without any character of the given code.
QString TogliCarattere(const QVariant &text, int characterCode);

/// True when the text holds a character that `allowed` does not.
bool ContieneCaratteriNonAmmessi(const QString &text, const QString &allowed);

/// A path with "\" taken apart. The folder ends with its "\"; the extension comes without its point. After
/// an error all three are empty.
struct PercorsoDiviso {
    QString folder;
    QString name;
    QString extension;
    bool error = false;
};

/// Takes a path apart from its end. A point that is last or first, or a character outside the allowed sets, is an
/// error; the sets hold no colon, so a folder that begins with a drive letter is one.
PercorsoDiviso DividiPercorso(const QString &path);

/// The smaller and the larger of two values: numbers by value, texts by code unit, a number before any text.
QVariant Minimo(const QVariant &first, const QVariant &second);
QVariant Massimo(const QVariant &first, const QVariant &second);

} // namespace qir
