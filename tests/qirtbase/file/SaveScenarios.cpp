#include "tests/qirtbase/file/SaveScenarios.h"

#include <gtest/gtest.h>

#include <QFile>

#include <unistd.h>

#include <cerrno>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

const QString &password = scenarioPassword;

bool loads(DatabaseFile &file, const QString &path, const QString &word = {}) {
    const auto body = file.load(path, word);
    if (body && *body != oldBody)
        throw std::runtime_error("a load gave the wrong body");
    return body.has_value();
}

} // namespace

QByteArray unlikePages(qsizetype size) {
    QByteArray body;
    for (int i = 0; body.size() < size; ++i)
        body.append(QByteArray::number(i * 2654435761U)).append('\n');
    return body.first(size);
}

void PrintTo(const Scenario &scenario, std::ostream *out) {
    *out << scenario.name;
}

QByteArray bodyIn(const QByteArray &content, const QString &word) {
    const auto read = readBytes(content, word);
    return read ? read->body : QByteArray();
}

DatabaseFileOptions optionsIn(const QString &folder) {
    DatabaseFileOptions options = testOptions();
    options.stateFolder = folder + u"/state"_s;
    return options;
}

namespace {

bool loadIt(DatabaseFile &file, const QString &folder) {
    return loads(file, folder + u"/a.ddb"_s);
}

void withoutUnnamedFiles(HookedFileOps &ops) {
    ops.onOpen = [](unsigned flags) {
        return (flags & O_TMPFILE) == static_cast<unsigned>(O_TMPFILE) ? std::optional(SystemError{EOPNOTSUPP})
                                                                       : std::nullopt;
    };
}

void withoutExchange(HookedFileOps &ops) {
    ops.onRename = [](unsigned flags) { return flags ? std::optional(SystemError{EINVAL}) : std::nullopt; };
}

void addLoads(std::vector<Scenario> &all) {
    all.push_back({.name = "LoadOpen", .before = containerBytes(oldBody), .begin = loadIt, .saves = false});
    all.push_back(
        {.name = "LoadProtected",
         .before = containerBytes(oldBody, password),
         .password = password,
         .begin = [](DatabaseFile &file, const QString &folder) { return loads(file, folder + u"/a.ddb"_s, password); },
         .saves = false});
    all.push_back({.name = "LoadIgnoringCase",
                   .before = containerBytes(oldBody),
                   .begin = [](DatabaseFile &file, const QString &folder) { return loads(file, folder + u"/A.DDB"_s); },
                   .saves = false});
}

void addSaves(std::vector<Scenario> &all) {
    all.push_back({.name = "Save", .before = containerBytes(oldBody), .begin = loadIt});
    all.push_back({.name = "SaveProtected",
                   .before = containerBytes(oldBody, password),
                   .password = password,
                   .begin = [](DatabaseFile &file, const QString &folder) {
                       return loads(file, folder + u"/a.ddb"_s, password);
                   }});
    all.push_back({.name = "SaveNew", .begin = [](DatabaseFile &file, const QString &folder) {
                       return file.setFileName(folder + u"/a.ddb"_s);
                   }});
    all.push_back(
        {.name = "SaveAs",
         .fileName = u"b.ddb"_s,
         .before = containerBytes(otherBody),
         .prepare = [](const QString &folder) { writeContent(folder + u"/a.ddb"_s, containerBytes(oldBody)); },
         .begin =
             [](DatabaseFile &file, const QString &folder) {
                 return loads(file, folder + u"/a.ddb"_s) && file.setFileName(folder + u"/b.ddb"_s);
             }});
    all.push_back({.name = "SaveAsOverAnotherProgramsVersion",
                   .before = containerBytes(oldBody),
                   .begin =
                       [](DatabaseFile &file, const QString &folder) {
                           if (!loads(file, folder + u"/a.ddb"_s))
                               return false;
                           FileHeader theirs = readBytes(contentOf(folder + u"/a.ddb"_s))->header;
                           theirs.saveId.fill(0xee);
                           writeContent(folder + u"/a.ddb"_s, containerBytes(otherBody, {}, theirs));
                           return file.setFileName(folder + u"/a.ddb"_s);
                       },
                   .keepsOther = true});
    all.push_back(
        {.name = "SaveThroughALink",
         .before = containerBytes(oldBody),
         .prepare = [](const QString &folder) { QFile::link(u"a.ddb"_s, folder + u"/link.ddb"_s); },
         .begin = [](DatabaseFile &file, const QString &folder) { return loads(file, folder + u"/link.ddb"_s); }});
}

void addSavesThatLackACall(std::vector<Scenario> &all) {
    all.push_back({.name = "SaveWithoutUnnamedFiles",
                   .before = containerBytes(oldBody),
                   .begin = loadIt,
                   .lacks = withoutUnnamedFiles});
    all.push_back(
        {.name = "SaveWithoutExchange", .before = containerBytes(oldBody), .begin = loadIt, .lacks = withoutExchange});
    all.push_back(
        {.name = "SaveNewWithoutUnnamedFiles",
         .begin = [](DatabaseFile &file, const QString &folder) { return file.setFileName(folder + u"/a.ddb"_s); },
         .lacks = withoutUnnamedFiles});
}

void addSavesInPlace(std::vector<Scenario> &all) {
    all.push_back(
        {.name = "SaveAHardLinkedFile",
         .before = containerBytes(oldBody),
         .prepare =
             [](const QString &folder) {
                 writeContent(folder + u"/a.ddb"_s, {});
                 EXPECT_EQ(::link(systemPath(folder + u"/a.ddb"_s).c_str(), systemPath(folder + u"/b.ddb"_s).c_str()),
                           0);
             },
         .begin = loadIt,
         .inPlace = true});
    all.push_back(
        {.name = "SaveAnothersFile",
         .before = containerBytes(oldBody, password),
         .password = password,
         .begin = [](DatabaseFile &file, const QString &folder) { return loads(file, folder + u"/a.ddb"_s, password); },
         .inPlace = true,
         .lacks =
             [](HookedFileOps &ops) {
                 ops.onCall = [](FileCall call, const std::string &) {
                     return call == FileCall::SetMode ? std::optional(SystemError{EPERM}) : std::nullopt;
                 };
             }});
    all.push_back({.name = "SaveInAFolderThatTakesNoFile",
                   .before = containerBytes(oldBody),
                   .begin = loadIt,
                   .inPlace = true,
                   .copyElsewhere = true,
                   .lacks = [](HookedFileOps &ops) {
                       ops.onOpenIn = [](const std::string &in, unsigned flags) {
                           const bool makes =
                               flags & O_CREAT || (flags & O_TMPFILE) == static_cast<unsigned>(O_TMPFILE);
                           return makes && in.find("state") == std::string::npos ? std::optional(SystemError{EACCES})
                                                                                 : std::nullopt;
                       };
                   }});
}

} // namespace

std::vector<Scenario> scenarios() {
    std::vector<Scenario> all;
    addLoads(all);
    addSaves(all);
    addSavesThatLackACall(all);
    addSavesInPlace(all);
    return all;
}

} // namespace qir
