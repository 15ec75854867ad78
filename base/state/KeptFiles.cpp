#include "base/state/KeptFiles.h"

#include "base/ByteReader.h"
#include "base/StagedFile.h"
#include "base/state/StateFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

const QString timeForm = u"yyyy-MM-dd HH.mm.ss"_s;

const QList<KeptKind> besides{KeptKind::Conflict, KeptKind::Replaced};
const QString endedSuffix = u".ended"_s;
const QString expiredSuffix = u".expired"_s;

QString rescueFolder() {
    return defaultStateFolder() + u"/rescue"_s;
}

QString journalFolder() {
    return defaultStateFolder() + u"/journal"_s;
}

/// A long name is cut in its middle to make room for the rest.
bool isNameOf(const QString &stem, const QString &whole, const QString &name) {
    constexpr qsizetype nearlyLongest = 250; // bytes of a file name
    return name == stem || (name.startsWith(stem) && whole.toUtf8().size() >= nearlyLongest);
}

/// What an entry's name says of it; none where it is no kept version's.
struct KeptName {
    QString name;
    KeptKind kind;
    QDateTime time;
    int number;
    QString extension;
};

std::optional<KeptName> readName(const QString &entry) {
    static const QRegularExpression form(
        u"^(.*) \\((conflict|rescued|replaced) (\\d{4}-\\d\\d-\\d\\d \\d\\d\\.\\d\\d\\.\\d\\d)(?: (\\d+))?\\)(.*)$"_s,
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = form.match(entry);
    if (!match.hasMatch())
        return std::nullopt;
    KeptKind kind = KeptKind::Conflict;
    for (const KeptKind each : {KeptKind::Rescued, KeptKind::Replaced})
        if (match.captured(2) == keptWord(each))
            kind = each;
    return KeptName{match.captured(1), kind, QDateTime::fromString(match.captured(3), timeForm),
                    std::max(1, match.captured(4).toInt()), match.captured(5)};
}

QStringList entriesOf(const QString &folder) {
    return QDir(folder).entryList(QDir::Files | QDir::Hidden);
}

void findIn(const QString &folder, const QString &name, const QString &extension, const QList<KeptKind> &kinds,
            std::vector<KeptFile> &found) {
    for (const QString &entry : entriesOf(folder)) {
        const std::optional<KeptName> kept = readName(entry);
        if (kept && kinds.contains(kept->kind) && kept->extension == extension && isNameOf(kept->name, entry, name))
            found.push_back({folder + u'/' + entry, kept->kind, kept->time, kept->number, name + extension});
    }
}

/// The path that the head of an ended journal names, as the component lays it out (JournalHead): of an open file's
/// alone, a protected one's is sealed.
QString pathInJournal(const QString &journal) {
    constexpr qsizetype sealedAt = 12;
    constexpr qsizetype pathAt = 112; // behind its length
    constexpr qsizetype pathInFirstVersion = 96;
    constexpr qint64 headSizeMax = 17408;
    QFile file(journal);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray head = file.read(headSizeMax);
    const ByteReader fields(head);
    if (!head.startsWith("QIRJRNL") || fields.from(sealedAt).number<std::uint32_t>() != 0)
        return {};
    const auto version = fields.from(7).number<char>();
    ByteReader path = fields.from(version == '1' ? pathInFirstVersion : pathAt);
    return QFile::decodeName(path.sizedBytes<std::uint16_t>().toByteArray());
}

/// The name of a journal without what says that it was ended; "" for any other name.
QString nameBeforeEnd(QString name) {
    if (name.endsWith(expiredSuffix))
        name.chop(expiredSuffix.size());
    if (!name.endsWith(endedSuffix))
        return {};
    name.chop(endedSuffix.size());
    return name;
}

void sortByTime(std::vector<KeptFile> &found) {
    std::ranges::sort(found, {}, [](const KeptFile &kept) { return std::tuple(kept.time, kept.number, kept.path); });
}

/// Gives a file another name in its folder, where that is free.
SystemResult<void> rename(FileOps &ops, const QString &from, const QString &to) {
    const auto path = ResolvedPath::of(ops, systemPath(from));
    if (!path)
        return tl::unexpected(path.error());
    const auto renamed =
        ops.renameAt(path->folder.descriptor(), path->name, systemPath(QFileInfo(to).fileName()), RENAME_NOREPLACE);
    return renamed ? path->syncFolder(ops) : renamed;
}

} // namespace

QString keptWord(KeptKind kind) {
    switch (kind) {
    case KeptKind::Conflict:
        return u"conflict"_s;
    case KeptKind::Rescued:
        return u"rescued"_s;
    case KeptKind::Replaced:
        return u"replaced"_s;
    case KeptKind::Ended:
        break;
    }
    return u"ended"_s;
}

std::vector<KeptFile> keptFiles(const QString &file) {
    const QFileInfo info(QFileInfo(file).canonicalFilePath().isEmpty() ? QFileInfo(file).absoluteFilePath()
                                                                       : QFileInfo(file).canonicalFilePath());
    std::vector<KeptFile> found;
    findIn(info.absolutePath(), info.fileName(), {}, besides, found);
    findIn(rescueFolder(), info.fileName(), {}, besides, found);
    const QString extension = info.suffix().isEmpty() ? QString() : u'.' + info.suffix();
    findIn(rescueFolder(), info.completeBaseName(), extension, {KeptKind::Rescued}, found);
    sortByTime(found);
    return found;
}

std::vector<KeptFile> keptInStateFolder() {
    std::vector<KeptFile> found;
    for (const QString &entry : entriesOf(rescueFolder()))
        if (const std::optional<KeptName> kept = readName(entry))
            found.push_back(
                {rescueFolder() + u'/' + entry, kept->kind, kept->time, kept->number, kept->name + kept->extension});
    for (const QString &entry : entriesOf(journalFolder())) {
        const QString path = journalFolder() + u'/' + entry;
        if (!nameBeforeEnd(entry).isEmpty())
            found.push_back({path, KeptKind::Ended, QFileInfo(path).lastModified(), 1, pathInJournal(path)});
    }
    sortByTime(found);
    return found;
}

SystemResult<QString> bringBackEnded(FileOps &ops, const QString &path) {
    const QString name = nameBeforeEnd(path);
    const auto renamed = rename(ops, path, name);
    return renamed ? SystemResult<QString>(name) : tl::unexpected(renamed.error());
}

SystemResult<void> endAgainUnlessTaken(FileOps &ops, const QString &path) {
    const auto file =
        OpenFile::openAt(ops, AT_FDCWD, systemPath(path), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (!file)
        return file.error().number == ENOENT ? SystemResult<void>() : tl::unexpected(file.error());
    if (const auto held = ops.lock(file->descriptor(), LockKind::Exclusive); !held)
        return held.error().number == EWOULDBLOCK ? SystemResult<void>() : held;
    return rename(ops, path, path + endedSuffix);
}

QString keptName(const QString &name, KeptKind kind, int number) {
    QString tail = u" (%1 %2"_s.arg(keptWord(kind), QDateTime::currentDateTime().toString(timeForm));
    if (number > 1)
        tail += u' ' + QString::number(number);
    tail += u')';
    constexpr qsizetype longest = 255; // bytes
    QString stem = name;
    while ((stem + tail).toUtf8().size() > longest)
        stem.chop(stem.size() > 1 && stem.back().isLowSurrogate() ? 2 : 1);
    return stem + tail;
}

} // namespace qir
