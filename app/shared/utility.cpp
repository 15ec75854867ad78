#include "app/shared/utility.h"

#include "base/VariantKind.h"

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

const QString allowedInExtension = u"QWERTYUIOPASDFGHJKLZXCVBNMqwertyuiopasdfghjklzxcvbnm1234567890-_"_s;
const QString allowedInName = u"QWERTYUIOPASDFGHJKLZXCVBNMqwertyuiopasdfghjklzxcvbnm1234567890 -_"_s;
const QString allowedInFolder = u"QWERTYUIOPASDFGHJKLZXCVBNMqwertyuiopasdfghjklzxcvbnm1234567890 -_\\."_s;

const PercorsoDiviso refused{{}, {}, {}, true};

bool less(const QVariant &first, const QVariant &second) {
    const bool firstIsText = kindOf(first) == VariantKind::Text;
    const bool secondIsText = kindOf(second) == VariantKind::Text;
    if (firstIsText != secondIsText)
        return secondIsText;
    if (firstIsText)
        return first.toString() < second.toString();
    return first.toDouble() < second.toDouble();
}

} // namespace

void SostituisciTesto(QString &text, const QString &find, const QString &replacement) {
    if (replacement.toUpper().contains(find.toUpper()))
        return;
    for (qsizetype at = text.indexOf(find, 0, Qt::CaseInsensitive); at >= 0;
         at = text.indexOf(find, 0, Qt::CaseInsensitive))
        text.replace(at, find.size(), replacement);
}

QString TogliMarcatori(const QString &entry) {
    QString name = entry;
    SostituisciTesto(name, u" ?"_s, QString());
    SostituisciTesto(name, u" !"_s, QString());
    return name;
}

QString TogliCarattere(const QVariant &text, int characterCode) {
    QString rest = text.toString();
    rest.remove(QChar(characterCode));
    return rest;
}

bool ContieneCaratteriNonAmmessi(const QString &text, const QString &allowed) {
    return std::any_of(text.begin(), text.end(), [&](QChar c) { return !allowed.contains(c); });
}

PercorsoDiviso DividiPercorso(const QString &path) {
    PercorsoDiviso parts;
    QString rest = path;
    const qsizetype point = rest.lastIndexOf(u'.');
    if (point > rest.lastIndexOf(u'\\')) {
        if (point == rest.size() - 1 || point == 0)
            return refused;
        parts.extension = rest.mid(point + 1);
        if (ContieneCaratteriNonAmmessi(parts.extension, allowedInExtension))
            return refused;
        rest.truncate(point);
    }
    const qsizetype separator = rest.lastIndexOf(u'\\');
    parts.name = rest.mid(separator + 1);
    parts.folder = rest.left(separator + 1);
    if (ContieneCaratteriNonAmmessi(parts.name, allowedInName) ||
        ContieneCaratteriNonAmmessi(parts.folder, allowedInFolder))
        return refused;
    return parts;
}

QVariant Minimo(const QVariant &first, const QVariant &second) {
    return less(second, first) ? second : first;
}

QVariant Massimo(const QVariant &first, const QVariant &second) {
    return less(first, second) ? second : first;
}

} // namespace qir
