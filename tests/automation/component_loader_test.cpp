#include "platform/automation/AutomationError.h"
#include "platform/automation/ComponentLoader.h"
#include "tests/tools/ComponentPath.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace qir {

namespace {

const QString database = u"QIRTBase.clsQirDatabase"_s;

QString fixture(const QString &name) {
    return QStringLiteral(FIXTURE_PLUGINS) + u'/' + name;
}

std::string errorOf(const QStringList &folders, const QString &progId = database) {
    const ComponentPath path(folders);
    try {
        createObject(progId);
    } catch (const AutomationError &error) {
        return error.what();
    }
    return "no error";
}

QString classFrom(const QStringList &folders, const QString &progId = database) {
    const ComponentPath path(folders);
    const AutomationObject object = createObject(progId);
    return QString::fromLatin1(object.object()->metaObject()->className());
}

// First of all tests in the program: the library is not loaded yet, and stays loaded once it is.
TEST(ComponentLoaderTest, MetadataIsReadWithoutLoadingTheLibrary) {
    ASSERT_FALSE(qEnvironmentVariableIsSet("QIR_TEST_FIRST_LOADED"));
    EXPECT_EQ(classFrom({fixture(u"first"_s), fixture(u"second"_s)}, u"Test.Second"_s), u"SecondObject"_s);
    EXPECT_THAT(errorOf({fixture(u"first"_s)}, u"Test.Absent"_s), HasSubstr("Test.Absent"));
    EXPECT_FALSE(qEnvironmentVariableIsSet("QIR_TEST_FIRST_LOADED"));
    EXPECT_EQ(classFrom({fixture(u"first"_s)}), u"FirstObject"_s);
    EXPECT_TRUE(qEnvironmentVariableIsSet("QIR_TEST_FIRST_LOADED"));
}

TEST(ComponentLoaderTest, TheFirstFolderThatHasALibraryForTheIdentifierServesIt) {
    EXPECT_EQ(classFrom({fixture(u"first"_s), fixture(u"second"_s)}), u"FirstObject"_s);
    EXPECT_EQ(classFrom({fixture(u"second"_s), fixture(u"first"_s)}), u"SecondObject"_s);
    EXPECT_EQ(classFrom({u"/nowhere/at/all"_s, fixture(u"plain"_s), fixture(u"second"_s)}), u"SecondObject"_s);
}

TEST(ComponentLoaderTest, WithinAFolderTheFirstLibraryByNameServesIt) {
    const QTemporaryDir folder;
    ASSERT_TRUE(QFile::copy(fixture(u"second"_s) + u"/second.so"_s, folder.filePath(u"a.so"_s)));
    ASSERT_TRUE(QFile::copy(fixture(u"first"_s) + u"/first.so"_s, folder.filePath(u"b.so"_s)));
    EXPECT_EQ(classFrom({folder.path()}), u"SecondObject"_s);
}

TEST(ComponentLoaderTest, FoldersAreThoseOfTheVariableThenBesideTheProgramThenInstalled) {
    const ComponentPath path({u"/one"_s, u""_s, u"/two"_s});
    const QDir program(QCoreApplication::applicationDirPath());
    EXPECT_EQ(componentFolders(), (QStringList{u"/one"_s, u"/two"_s, program.filePath(u"components"_s),
                                               QDir::cleanPath(program.filePath(u"../lib/qir/components"_s))}));
}

/// A program in a prefix of its own, with or without components beside it and installed.
struct InstalledProgram {
    QTemporaryDir prefix;

    InstalledProgram() {
        QDir(prefix.path()).mkpath(u"bin/components"_s);
        QDir(prefix.path()).mkpath(u"lib/qir/components"_s);
        EXPECT_TRUE(QFile::copy(QStringLiteral(COMPONENT_PROBE), prefix.filePath(u"bin/probe"_s)));
    }
    void place(const QString &library, const QString &folder) const {
        const QString file = u'/' + library + u".so"_s;
        EXPECT_TRUE(QFile::copy(fixture(library) + file, prefix.filePath(folder) + file));
    }
    QString run() const {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"QIR_COMPONENT_PATH"_s);
        process.setProcessEnvironment(environment);
        process.start(prefix.filePath(u"bin/probe"_s), {database});
        EXPECT_TRUE(process.waitForFinished(-1));
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }
};

TEST(ComponentLoaderTest, TheFolderBesideTheProgramComesBeforeTheInstalledOne) {
    const InstalledProgram program;
    program.place(u"second"_s, u"bin/components"_s);
    program.place(u"first"_s, u"lib/qir/components"_s);
    EXPECT_EQ(program.run(), u"SecondObject"_s);
}

TEST(ComponentLoaderTest, TheInstalledFolderIsSearchedLast) {
    const InstalledProgram program;
    program.place(u"first"_s, u"lib/qir/components"_s);
    EXPECT_EQ(program.run(), u"FirstObject"_s);
}

TEST(ComponentLoaderTest, NoLibraryForTheIdentifierIsAnErrorThatNamesItAndTheFolders) {
    const std::string error = errorOf({u"/nowhere/one"_s, u"/nowhere/two"_s});
    EXPECT_THAT(error, AllOf(HasSubstr("QIRTBase.clsQirDatabase"), HasSubstr("/nowhere/one, /nowhere/two"),
                             HasSubstr("/components"), HasSubstr("/lib/qir/components")));
}

TEST(ComponentLoaderTest, ALibraryWithoutMetadataIsNoComponent) {
    EXPECT_THAT(errorOf({fixture(u"plain"_s)}), HasSubstr("No component serves"));
}

TEST(ComponentLoaderTest, AFileThatIsNoLibraryIsPassedOver) {
    const QTemporaryDir folder;
    for (const QString &name : {u"a.so"_s, u"notes.txt"_s}) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("no library");
    }
    EXPECT_EQ(classFrom({folder.path(), fixture(u"second"_s)}), u"SecondObject"_s);
}

TEST(ComponentLoaderTest, APluginOfAnotherInterfaceIsPassedOver) {
    const std::string error = errorOf({fixture(u"other"_s)});
    EXPECT_THAT(error, AllOf(HasSubstr("No component serves"), Not(HasSubstr("Some.Other.Interface"))));
}

TEST(ComponentLoaderTest, ALibraryOfANewerInterfaceIsNamedWithItsInterface) {
    const std::string error = errorOf({fixture(u"newer"_s)});
    EXPECT_THAT(error, AllOf(HasSubstr("No component serves \"QIRTBase.clsQirDatabase\""), HasSubstr("newer.so"),
                             HasSubstr("QIR.Component/2"), HasSubstr("QIR.Component/1")));
    EXPECT_EQ(classFrom({fixture(u"newer"_s), fixture(u"second"_s)}), u"SecondObject"_s);
}

TEST(ComponentLoaderTest, ALibraryThatCannotBeLoadedIsAnErrorWithTheReason) {
    EXPECT_THAT(errorOf({fixture(u"unresolved"_s), fixture(u"second"_s)}),
                AllOf(HasSubstr("unresolved.so"), HasSubstr("definedNowhere")));
}

TEST(ComponentLoaderTest, ARootObjectWithoutCreateInstanceIsAnError) {
    EXPECT_THAT(errorOf({fixture(u"nocreate"_s)}),
                AllOf(HasSubstr("nocreate.so"), HasSubstr("NoCreateRoot"), HasSubstr("CreateInstance(QString)")));
}

TEST(ComponentLoaderTest, NoInstanceIsAnError) {
    EXPECT_THAT(errorOf({fixture(u"null"_s)}), AllOf(HasSubstr("null.so"), HasSubstr("gave no instance")));
}

TEST(ComponentLoaderTest, WhatCreateInstanceThrowsPassesThrough) {
    const ComponentPath path({fixture(u"throwing"_s)});
    EXPECT_THAT([] { createObject(database); }, testing::ThrowsMessage<std::runtime_error>("out of instances"));
}

} // namespace

} // namespace qir
