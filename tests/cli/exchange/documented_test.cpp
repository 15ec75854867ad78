#include "tests/cli/exchange/PostgresFixture.h"

#include <QProcessEnvironment>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// The line of the companion's page that begins so.
QString pageLine(const QByteArray &begin) {
    QFile page(QStringLiteral(COMPANION_PAGE));
    if (!page.open(QIODevice::ReadOnly))
        return {};
    for (const QByteArray &line : page.readAll().split('\n'))
        if (line.trimmed().startsWith(begin))
            return QString::fromUtf8(line.trimmed());
    return {};
}

/// The lines of the page that need other programs, as they stand there.
class DocumentedTest : public PostgresFixture {
protected:
    void SetUp() override {
        QDir().mkpath(path(u"bin"_s));
        QDir().mkpath(path(u"home"_s));
        ASSERT_TRUE(QFile::link(QStringLiteral(QIRDB), path(u"bin/qirdb"_s)));
    }

    void shell(const QString &line, const QString &server = {}) const {
        ASSERT_FALSE(line.isEmpty());
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"PATH"_s, path(u"bin"_s) + u':' + environment.value(u"PATH"_s));
        environment.insert(u"HOME"_s, path(u"home"_s));
        environment.insert(u"server"_s, server);
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(path(u"."_s));
        process.start(u"bash"_s, {u"-c"_s, line});
        EXPECT_TRUE(process.waitForFinished(-1));
        EXPECT_EQ(process.exitCode(), 0) << line.toStdString() << process.readAllStandardError().toStdString();
    }
};

TEST_P(DocumentedTest, AFleetGoesToAServerByALoop) {
    PostgresFixture::SetUp();
    if (IsSkipped())
        return;
    makePumps();
    QDir().mkpath(path(u"site"_s));
    for (const QString &name : {u"site/A.DDB"_s, u"site/B 2.DDB"_s})
        ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(name)));
    shell(pageLine("for file in site/*.DDB"), server().connection());
    EXPECT_EQ(server().ask(u"SELECT _file, count(*) FROM fleet.\"Pumps\" GROUP BY 1 ORDER BY 1"_s),
              "site/A.DDB|2\nsite/B 2.DDB|2\n");
}

TEST_P(DocumentedTest, ASpreadsheetOfOpenDocumentKeepsEveryValue) {
    if (QStandardPaths::findExecutable(u"libreoffice"_s).isEmpty())
        GTEST_SKIP() << "not run: there is no LibreOffice";
    ProgramTest::make(u"A.DDB"_s, {{u"Pumps"_s, "Name[text:40],Speed[long],Head[double]\n"
                                                "007,1500,0.30000000000000004\n"
                                                "=1+1,-3,1e+300\n"
                                                "\"a \"\"b\"\", c\",0,-0.1\n"
                                                "\u00fcber \u20ac,20240229,123456789.12345678\n"}});
    done({u"export"_s, u"A.DDB"_s, u"--to"_s, u"csv"_s, u"tables"_s});
    shell(pageLine("libreoffice --headless --infilter"));
    shell(pageLine("libreoffice --headless --convert-to csv"));
    done({u"create"_s, u"BACK.DDB"_s});
    done({u"import"_s, u"BACK.DDB"_s, u"back"_s});
    EXPECT_EQ(done({u"diff"_s, u"A.DDB"_s, u"BACK.DDB"_s}), "same: Pumps\n");
}

INSTANTIATE_TEST_SUITE_P(Component, DocumentedTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
