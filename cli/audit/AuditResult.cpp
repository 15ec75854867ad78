#include "cli/audit/AuditResult.h"

#include "cli/tables/JsonText.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <array>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr std::array<const char *, 3> stateNames{"same", "different", "trouble"};

} // namespace

AuditResult AuditResult::trouble(const QString &file, const QString &error) {
    const QString prefix = file + u": "_s;
    return {file, State::Trouble, {}, error.startsWith(prefix) ? error.sliced(prefix.size()) : error};
}

Result<AuditResult> AuditResult::ofJson(const QByteArray &line) {
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    AuditResult result;
    result.file = object[u"file"_s].toString();
    const QString state = object[u"state"_s].toString();
    for (std::size_t i = 0; i < stateNames.size(); ++i) {
        if (result.file.isEmpty() || state != QLatin1StringView(stateNames[i]))
            continue;
        result.state = static_cast<State>(i);
        const QJsonObject tables = object[u"tables"_s].toObject();
        for (auto table = tables.begin(); table != tables.end(); ++table)
            result.tables.push_back({table.key(), table->isNull() ? std::nullopt : std::optional(table->toInteger())});
        result.error = object[u"error"_s].toString();
        return result;
    }
    return failure(u"it is no line of an audit"_s);
}

QByteArray AuditResult::json() const {
    QByteArray out("{\"file\": ");
    appendJsonString(out, file);
    out += QByteArray(", \"state\": \"") + stateNames[static_cast<std::size_t>(state)] + "\", \"tables\": {";
    const char *separator = "";
    for (const Table &table : tables) {
        out += separator;
        appendJsonString(out, table.name);
        out += table.cells ? ": " + QByteArray::number(*table.cells) : QByteArray(": null");
        separator = ", ";
    }
    out += "}, \"error\": ";
    if (error.isEmpty())
        out += "null";
    else
        appendJsonString(out, error);
    return out + "}\n";
}

} // namespace qir
