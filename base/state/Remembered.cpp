#include "base/state/Remembered.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <array>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostFiles = 10;
constexpr int mostPairs = 10;
constexpr int mostKeyedPairs = 50;
constexpr int mostPathLength = 8192; // a path that is longer reaches nothing

constexpr auto pathKey = "path"_L1;
constexpr auto leftKey = "left"_L1;
constexpr auto rightKey = "right"_L1;
constexpr auto tablesKey = "tables"_L1;
constexpr auto maximizedKey = "maximized"_L1;
constexpr auto filesKey = "files"_L1;
constexpr auto pairsKey = "pairs"_L1;
constexpr auto keysKey = "keyFields"_L1;
constexpr auto folderKey = "folder"_L1;
constexpr auto kindKey = "kind"_L1;
constexpr auto folderProtectedKey = "folderProtected"_L1; // folder and kind are those of a protected file
constexpr auto windowKey = "window"_L1;
constexpr auto choicesKey = "choices"_L1;
constexpr auto protectedKey = "protected"_L1;
constexpr auto keepsProtectedKey = "keepsProtected"_L1;

/// A path that could have been noted, "" for anything else.
QString pathIn(const QJsonObject &entry, QLatin1StringView key) {
    const QString path = entry.value(key).toString();
    return path.startsWith(u'/') && path.size() <= mostPathLength && !path.contains(QChar(0)) ? path : QString();
}

FilePair pairIn(const QJsonObject &entry) {
    return {pathIn(entry, leftKey), pathIn(entry, rightKey)};
}

bool isWhole(const FilePair &pair) {
    return !pair.left.isEmpty() && !pair.right.isEmpty();
}

QJsonObject entryOf(const FilePair &pair) {
    return {{leftKey, pair.left}, {rightKey, pair.right}};
}

QJsonObject withProtection(QJsonObject entry, Protection protection) {
    if (protection == Protection::Protected)
        entry.insert(protectedKey, true);
    return entry;
}

/// The list without the entries for which that holds.
QJsonArray without(const QJsonArray &list, const std::function<bool(const QJsonObject &)> &goes) {
    QJsonArray rest;
    for (const QJsonValue entry : list)
        if (entry.isObject() && !goes(entry.toObject()))
            rest.append(entry);
    return rest;
}

void removeFrom(QJsonObject &state, QLatin1StringView key, const std::function<bool(const QJsonObject &)> &goes) {
    if (state.contains(key))
        state.insert(key, without(state.value(key).toArray(), goes));
}

/// Puts an entry before all others of a list that is cut to its length.
void putFirst(QJsonObject &state, QLatin1StringView key, const QJsonObject &entry, int most) {
    QJsonArray list = state.value(key).toArray();
    list.prepend(entry);
    while (list.size() > most)
        list.removeLast();
    state.insert(key, list);
}

/// Whether an extension is that of one of the kinds of databases.
bool isKind(const QString &extension) {
    constexpr std::array kinds{"DDB"_L1, "WDB"_L1, "UDB"_L1, "IDB"_L1, "SDB"_L1};
    return std::ranges::find(kinds, extension) != kinds.end();
}

QRect rectangleIn(const QJsonObject &entry) {
    static constexpr int farthest = 100'000; // so that sums of two stay in bounds
    const auto number = [&entry](QLatin1StringView key) {
        return std::clamp(entry.value(key).toInt(-farthest), -farthest, farthest);
    };
    return {number("x"_L1), number("y"_L1), number("width"_L1), number("height"_L1)};
}

} // namespace

Remembered::Remembered(const QString &folder, FileOps &ops)
    : m_file(ops, folder, "editor.json") {}

QJsonObject Remembered::load() const {
    return m_unwritten ? *m_unwritten : QJsonDocument::fromJson(m_file.read()).object();
}

bool Remembered::change(const std::function<void(QJsonObject &)> &edit) {
    QJsonObject state = load();
    const QJsonObject before = state;
    edit(state);
    if (state == before)
        return !m_unwritten;
    QByteArray bytes = QJsonDocument(state).toJson();
    if (bytes.size() > StateFile::mostBytes) { // by key fields alone, of tables with very many
        state.remove(keysKey);
        bytes = QJsonDocument(state).toJson();
    }
    if (m_file.write(bytes))
        m_unwritten.reset();
    else
        m_unwritten = state;
    return !m_unwritten;
}

bool Remembered::mayKeep(Protection protection) const {
    return protection == Protection::Open || keepsProtected();
}

QStringList Remembered::files() const {
    QStringList paths;
    for (const QJsonValue entry : load().value(filesKey).toArray())
        if (const QString path = pathIn(entry.toObject(), pathKey); !path.isEmpty() && paths.size() < mostFiles)
            paths.append(path);
    return paths;
}

QList<FilePair> Remembered::pairs() const {
    QList<FilePair> all;
    for (const QJsonValue entry : load().value(pairsKey).toArray())
        if (const FilePair pair = pairIn(entry.toObject()); isWhole(pair) && all.size() < mostPairs)
            all.append(pair);
    return all;
}

void Remembered::noteFile(const QString &path, Protection protection) {
    const bool keep = mayKeep(protection);
    const auto names = [&](const QJsonObject &entry) {
        const FilePair pair = pairIn(entry);
        return pair.left == path || pair.right == path;
    };
    change([&](QJsonObject &state) {
        removeFrom(state, filesKey, [&](const QJsonObject &entry) { return pathIn(entry, pathKey) == path; });
        if (!keep) // it may have been an open file until now
            for (const QLatin1StringView key : {pairsKey, keysKey})
                removeFrom(state, key, names);
        if (keep)
            putFirst(state, filesKey, withProtection({{pathKey, path}}, protection), mostFiles);
    });
}

void Remembered::notePair(const FilePair &pair, Protection protection) {
    const bool keep = mayKeep(protection);
    change([&](QJsonObject &state) {
        removeFrom(state, pairsKey, [&](const QJsonObject &entry) { return pairIn(entry) == pair; });
        if (keep)
            putFirst(state, pairsKey, withProtection(entryOf(pair), protection), mostPairs);
    });
}

void Remembered::dropFile(const QString &path) {
    change([&](QJsonObject &state) {
        removeFrom(state, filesKey, [&](const QJsonObject &entry) { return pathIn(entry, pathKey) == path; });
        removeFrom(state, pairsKey, [&](const QJsonObject &entry) {
            const FilePair pair = pairIn(entry);
            return pair.left == path || pair.right == path;
        });
    });
}

QStringList Remembered::keyFields(const FilePair &pair, const QString &table) const {
    for (const QJsonValue value : load().value(keysKey).toArray()) {
        const QJsonObject entry = value.toObject();
        if (pairIn(entry) != pair)
            continue;
        QStringList fields;
        for (const QJsonValue field : entry.value(tablesKey).toObject().value(table).toArray())
            if (field.isString())
                fields.append(field.toString());
        return fields;
    }
    return {};
}

void Remembered::noteKeyFields(const FilePair &pair, const QString &table, const QStringList &fields,
                               Protection protection) {
    const bool keep = mayKeep(protection);
    change([&](QJsonObject &state) {
        QJsonObject tables;
        removeFrom(state, keysKey, [&](const QJsonObject &entry) {
            const bool found = pairIn(entry) == pair;
            if (found)
                tables = entry.value(tablesKey).toObject();
            return found;
        });
        tables.remove(table);
        if (!fields.isEmpty())
            tables.insert(table, QJsonArray::fromStringList(fields));
        if (!keep || tables.isEmpty())
            return;
        QJsonObject entry = withProtection(entryOf(pair), protection);
        entry.insert(tablesKey, tables);
        putFirst(state, keysKey, entry, mostKeyedPairs);
    });
}

QString Remembered::folder() const {
    return m_folder.isEmpty() ? pathIn(load(), folderKey) : m_folder;
}

QString Remembered::kind() const {
    const QString kind = m_kind.isEmpty() ? load().value(kindKey).toString() : m_kind;
    return isKind(kind) ? kind : QString();
}

void Remembered::noteChosen(const QString &path, Protection protection) {
    const QFileInfo chosen(path);
    m_folder = chosen.absolutePath();
    if (const QString kind = chosen.suffix().toUpper(); isKind(kind))
        m_kind = kind;
    if (!mayKeep(protection))
        return;
    change([&](QJsonObject &state) {
        state.insert(folderKey, m_folder);
        if (!m_kind.isEmpty())
            state.insert(kindKey, m_kind);
        if (protection == Protection::Protected)
            state.insert(folderProtectedKey, true);
        else
            state.remove(folderProtectedKey);
    });
}

std::optional<WindowPlace> Remembered::windowPlace() const {
    const QJsonObject entry = load().value(windowKey).toObject();
    const QRect frame = rectangleIn(entry);
    if (frame.width() <= 0 || frame.height() <= 0)
        return std::nullopt;
    return WindowPlace{frame, entry.value(maximizedKey).toBool()};
}

void Remembered::noteWindowPlace(const WindowPlace &place) {
    change([&](QJsonObject &state) {
        state.insert(windowKey, QJsonObject{{"x"_L1, place.frame.x()},
                                            {"y"_L1, place.frame.y()},
                                            {"width"_L1, place.frame.width()},
                                            {"height"_L1, place.frame.height()},
                                            {maximizedKey, place.maximized}});
    });
}

bool Remembered::keepsProtected() const {
    return choice(keepsProtectedKey, u"no"_s) == u"yes"_s;
}

bool Remembered::setKeepsProtected(bool keeps) {
    const bool kept = setChoice(keepsProtectedKey, keeps ? u"yes"_s : u"no"_s);
    if (keeps)
        return kept;
    return change([](QJsonObject &state) {
        for (const QLatin1StringView key : {filesKey, pairsKey, keysKey})
            removeFrom(state, key, [](const QJsonObject &entry) { return entry.value(protectedKey).toBool(); });
        if (state.take(folderProtectedKey).toBool())
            for (const QLatin1StringView key : {folderKey, kindKey})
                state.remove(key);
    });
}

QString Remembered::choice(const QString &name, const QString &usual) const {
    return load().value(choicesKey).toObject().value(name).toString(usual);
}

bool Remembered::setChoice(const QString &name, const QString &value) {
    return change([&](QJsonObject &state) {
        QJsonObject choices = state.value(choicesKey).toObject();
        choices.insert(name, value);
        state.insert(choicesKey, choices);
    });
}

bool Remembered::forget() {
    m_folder.clear();
    m_kind.clear();
    return change([](QJsonObject &state) {
        for (const QLatin1StringView key :
             {filesKey, pairsKey, keysKey, folderKey, kindKey, folderProtectedKey, windowKey})
            state.remove(key);
    });
}

} // namespace qir
