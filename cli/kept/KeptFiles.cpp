#include "cli/kept/KeptFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

const QString timeForm = u"yyyy-MM-dd HH.mm.ss"_s;

QString rescueFolder() {
    const QString state = qEnvironmentVariable("XDG_STATE_HOME");
    return (state.startsWith(u'/') ? state : QDir::homePath() + u"/.local/state"_s) + u"/qir/rescue"_s;
}

/// A long name is cut in its middle to make room for the rest.
bool isNameOf(const QString &stem, const QString &whole, const QString &name) {
    constexpr qsizetype nearlyLongest = 250; // bytes of a file name
    return name == stem || (name.startsWith(stem) && whole.toUtf8().size() >= nearlyLongest);
}

void findIn(const QString &folder, const QString &name, const QString &extension, const QStringList &kinds,
            std::vector<KeptFile> &found) {
    static const QRegularExpression form(
        u"^(.*) \\((conflict|rescued|replaced) (\\d{4}-\\d\\d-\\d\\d \\d\\d\\.\\d\\d\\.\\d\\d)(?: (\\d+))?\\)(.*)$"_s,
        QRegularExpression::DotMatchesEverythingOption);
    for (const QString &entry : QDir(folder).entryList(QDir::Files | QDir::Hidden)) {
        const QRegularExpressionMatch match = form.match(entry);
        if (!match.hasMatch() || !kinds.contains(match.captured(2)) || match.captured(5) != extension ||
            !isNameOf(match.captured(1), entry, name))
            continue;
        found.push_back({folder + u'/' + entry, match.captured(2), QDateTime::fromString(match.captured(3), timeForm),
                         std::max(1, match.captured(4).toInt())});
    }
}

} // namespace

std::vector<KeptFile> keptFiles(const QString &file) {
    const QFileInfo info(QFileInfo(file).canonicalFilePath().isEmpty() ? QFileInfo(file).absoluteFilePath()
                                                                       : QFileInfo(file).canonicalFilePath());
    std::vector<KeptFile> found;
    const QStringList besides{u"conflict"_s, u"replaced"_s};
    findIn(info.absolutePath(), info.fileName(), {}, besides, found);
    findIn(rescueFolder(), info.fileName(), {}, besides, found);
    const QString extension = info.suffix().isEmpty() ? QString() : u'.' + info.suffix();
    findIn(rescueFolder(), info.completeBaseName(), extension, {u"rescued"_s}, found);
    std::ranges::sort(found, {}, [](const KeptFile &kept) { return std::tuple(kept.time, kept.number, kept.path); });
    return found;
}

QString keptName(const QString &name, const QString &what, int number) {
    QString tail = u" (%1 %2"_s.arg(what, QDateTime::currentDateTime().toString(timeForm));
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
