#include "cli/diff/ValueOutput.h"

#include "base/NumberText.h"
#include "base/VariantKind.h"
#include "cli/tables/JsonText.h"
#include "cli/tables/TextTable.h"

#include <cmath>

namespace qir {

namespace {

template<class Values, class Append>
void appendArray(QByteArray &out, const Values &values, Append append) {
    out += '[';
    const char *separator = "";
    for (const auto &value : values) {
        out += separator;
        append(out, value);
        separator = ", ";
    }
    out += ']';
}

} // namespace

QString numberWords(double number) {
    return std::isfinite(number) ? numberText(number) : QString::number(number);
}

QString valueWords(const QVariant &value) {
    return kindOf(value) == VariantKind::Text ? u'"' + printableText(value.toString()) + u'"'
                                              : numberWords(value.toDouble());
}

void appendJsonValue(QByteArray &out, const QVariant &value) {
    if (!value.isValid())
        out += "null";
    else if (kindOf(value) == VariantKind::Text)
        appendJsonString(out, value.toString());
    else if (const double number = value.toDouble(); std::isfinite(number))
        out += numberText(number).toLatin1();
    else
        appendJsonString(out, numberWords(number));
}

void appendJsonValues(QByteArray &out, const QVariantList &values) {
    appendArray(out, values, appendJsonValue);
}

void appendJsonNames(QByteArray &out, const QStringList &names) {
    appendArray(out, names, [](QByteArray &to, const QString &name) { appendJsonString(to, name); });
}

void appendJsonPair(QByteArray &out, const char *key, int left, int right) {
    out += QByteArray(", \"") + key + "\": [" + QByteArray::number(left) + ", " + QByteArray::number(right) + ']';
}

} // namespace qir
