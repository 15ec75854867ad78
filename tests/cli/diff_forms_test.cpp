#include "tests/cli/Program.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::Not;

namespace qir {

namespace {

/// Every form of `qirdb diff` beside the plain one, by position and by key.
class DiffFormsTest : public ProgramTest {
protected:
    /// One record removed, one added in front, one changed, one field of each side only; a table that is the same.
    void makePair() const {
        make(u"L.DDB"_s, {{u"Pumps"_s, "Name[text:20],Speed[long],Old[bool]\nP-1,1500,0\nP-2,7,1\nP-3,9,0\n"},
                          {u"Same"_s, "A[double]\n0.5\n"}});
        make(u"R.DDB"_s, {{u"PUMPS"_s, "New[text:5],Name[text:20],Speed[long]\n,P-0,1\nx,P-2,8\ny,P-3,9\n"},
                          {u"Same"_s, "A[double]\n0.5\n"}});
    }
    QByteArray different(const QStringList &options, const QByteArray &errors = QByteArray()) const {
        const Outcome result = run(QStringList{u"diff"_s, u"L.DDB"_s, u"R.DDB"_s} + options);
        EXPECT_EQ(result.status, 1) << result.errors.toStdString();
        EXPECT_EQ(result.errors, errors);
        return result.output;
    }
};

constexpr const char *sameIsUnkeyed = "qirdb: the table \"Same\" has no key and is compared by position\n";

TEST_P(DiffFormsTest, JsonByKeyTellsRecordsAddedRemovedAndChanged) {
    makePair();
    EXPECT_EQ(different({u"--json"_s, u"--key"_s, u"name"_s}, sameIsUnkeyed),
              "{\"table\": \"Pumps\", \"state\": \"different\", \"cells\": 7, \"records\": [3, 3], \"fields\": [3, 3], "
              "\"key\": [\"Name\"], \"added\": 1, \"removed\": 1, \"changed\": 1, \"moved\": 0, \"fieldsLeft\": "
              "[\"Old\"], \"fieldsRight\": [\"New\"]}\n"
              "{\"table\": \"Same\", \"state\": \"same\", \"cells\": 0, \"records\": [1, 1], \"fields\": [1, 1]}\n"
              "{\"table\": \"Pumps\", \"key\": [\"P-1\"], \"change\": \"removed\", \"record\": 1, \"values\": "
              "[\"P-1\", 1500, 0]}\n"
              "{\"table\": \"Pumps\", \"key\": [\"P-2\"], \"change\": \"changed\", \"field\": \"Speed\", \"left\": 7, "
              "\"right\": 8, \"records\": [2, 2]}\n"
              "{\"table\": \"Pumps\", \"key\": [\"P-0\"], \"change\": \"added\", \"record\": 1, \"values\": [\"\", "
              "\"P-0\", 1]}\n");
}

TEST_P(DiffFormsTest, JsonByKeyTellsAKeyThatOccursTwiceAndRecordsThatMovedAreTheSame) {
    make(u"L.DDB"_s, {{u"T"_s, "K[long],V[text]\n1,a\n2,b\n1,c\n"}});
    make(u"R.DDB"_s, {{u"T"_s, "K[long],V[text]\n2,b\n1,a\n1,c\n"}});
    EXPECT_EQ(done({u"diff"_s, u"--json"_s, u"--key"_s, u"T:K"_s, u"L.DDB"_s, u"R.DDB"_s}),
              "{\"table\": \"T\", \"state\": \"same\", \"cells\": 0, \"records\": [3, 3], \"fields\": [2, 2], \"key\": "
              "[\"K\"], \"added\": 0, \"removed\": 0, \"changed\": 0, \"moved\": 1, \"fieldsLeft\": [], "
              "\"fieldsRight\": []}\n"
              "{\"table\": \"T\", \"duplicate\": [1], \"side\": \"left\"}\n"
              "{\"table\": \"T\", \"duplicate\": [1], \"side\": \"right\"}\n");
}

TEST_P(DiffFormsTest, PlainTextByKey) {
    makePair();
    EXPECT_EQ(different({u"--key"_s, u"Pumps:Name"_s}, sameIsUnkeyed),
              "differs: Pumps (by Name: 1 added, 1 removed, 1 changed, 1 fields only left, 1 fields only right)\n"
              "same: Same\n"
              "Pumps: field Old: only left\n"
              "Pumps: field New: only right\n"
              "Pumps: \"P-1\": removed, record 1: \"P-1\", 1500, 0\n"
              "Pumps: \"P-2\": changed, record 2 | 2, field Speed: 7 | 8\n"
              "Pumps: \"P-0\": added, record 1: \"\", \"P-0\", 1\n");
}

TEST_P(DiffFormsTest, TabularByPosition) {
    make(u"L.DDB"_s, {{u"Pumps"_s, "Name[text],Speed[long]\nP-1,1500\nP-2,7\nP-3,9\n"}, {u"Same"_s, "A[byte]\n1\n"}});
    make(u"R.DDB"_s, {{u"Pumps"_s, "Name[text],Rate[long]\nP-1,1500\nP-2,8\n"}, {u"Same"_s, "A[byte]\n1\n"}});
    EXPECT_EQ(different({u"--tabular"_s}), "## Pumps\n"
                                           "!,,(Speed)\n"
                                           "@@,Name,Rate\n"
                                           "->,P-2,7->8\n"
                                           "---,P-3,9\n");
}

TEST_P(DiffFormsTest, TabularLeavesOutRecordsThatAreTheSameButForFieldsThatWent) {
    make(u"L.DDB"_s, {{u"T"_s, "A[long],B[long]\n1,2\n3,4\n"}});
    make(u"R.DDB"_s, {{u"T"_s, "A[long]\n1\n5\n"}});
    EXPECT_EQ(different({u"--tabular"_s}), "## T\n!,,---\n@@,A,B\n->,3->5,4\n");
    make(u"N.DDB"_s, {{u"T"_s, "A[long],B[long]\n1,2\n3,4\n"}});
    EXPECT_EQ(run({u"diff"_s, u"--tabular"_s, u"R.DDB"_s, u"N.DDB"_s}).output,
              "## T\n!,,+++\n@@,A,B\n+,1,2\n->,5->3,4\n");
}

TEST_P(DiffFormsTest, TabularByKey) {
    makePair();
    EXPECT_EQ(different({u"--tabular"_s, u"--key"_s, u"Name"_s}, sameIsUnkeyed), "## Pumps\n"
                                                                                 "!,+++,,,---\n"
                                                                                 "@@,New,Name,Speed,Old\n"
                                                                                 "---,,P-1,1500,0\n"
                                                                                 "->,x,P-2,7->8,1\n"
                                                                                 "+,y,P-3,9,0\n"
                                                                                 "+++,\"\",P-0,1,\n");
}

TEST_P(DiffFormsTest, TabularValuesThatLookLikeMarksAreEscaped) {
    make(u"L.DDB"_s, {{u"T"_s, "A[text],B[text]\na->b,NULL\n\"x,\"\"y\",1\n"}});
    make(u"R.DDB"_s, {{u"T"_s, "A[text],B[text]\na->b,_NULL\n\"x,\"\"y\",2\n"}});
    EXPECT_EQ(different({u"--tabular"_s}), "## T\n"
                                           "@@,A,B\n"
                                           "-->,a->b,_NULL-->__NULL\n"
                                           "->,\"x,\"\"y\",1->2\n");
}

TEST_P(DiffFormsTest, ATableOfOneSideIsTabularWhole) {
    make(u"L.DDB"_s, {{u"T"_s, "A[long]\n1\n2\n"}});
    make(u"R.DDB"_s, {{u"U"_s, "A[long]\n3\n"}});
    EXPECT_EQ(different({u"--tabular"_s}), "## T\n@@,A\n---,1\n---,2\n## U\n@@,A\n+++,3\n");
}

TEST_P(DiffFormsTest, IgnoresFieldsCaseBlanksAndSmallDistances) {
    make(u"L.DDB"_s, {{u"T"_s, "K[text],V[double],W[text]\nA,1,x\nb,2,y\n"}});
    make(u"R.DDB"_s, {{u"T"_s, "K[text],V[double],W[text]\na ,1.1,x\nB,2,z\n"}});
    const QStringList files{u"diff"_s, u"L.DDB"_s, u"R.DDB"_s};
    const QStringList rules{u"--ignore"_s,        u"w"_s,           u"--ignore-case"_s,
                            u"--ignore-blanks"_s, u"--tolerance"_s, u"0.1"_s};
    EXPECT_EQ(done(files + rules), "same: T\n");
    EXPECT_EQ(done(files + rules + QStringList{u"--key"_s, u"K"_s}), "same: T (by K)\n");
    EXPECT_EQ(run(files + rules.sliced(1 + 1)).status, 1);
    EXPECT_EQ(run(files + rules.first(2) + rules.sliced(3)).status, 1);
}

TEST_P(DiffFormsTest, ByPositionAPlaceIsIgnoredWhereBothItsFieldsAre) {
    make(u"L.DDB"_s, {{u"T"_s, "A[text],B[text],C[long],D[long]\nx,y,1,2\n"}});
    make(u"R.DDB"_s, {{u"T"_s, "B[text],A[text],c[long],D[long]\nx,yy,3,2\n"}});
    const QStringList files{u"L.DDB"_s, u"R.DDB"_s};
    EXPECT_THAT(different({u"--ignore"_s, u"A"_s}).toStdString(), HasSubstr("record 1, field 2 (B): \"y\" | \"yy\"\n"));
    EXPECT_EQ(done(QStringList{u"diff"_s, u"--ignore"_s, u"A"_s, u"--ignore"_s, u"B"_s, u"--ignore"_s, u"C"_s} + files),
              "same: T\n");
    make(u"S.DDB"_s, {{u"T"_s, "A[text],B[text]\nx,y\n"}});
    EXPECT_EQ(done({u"diff"_s, u"--ignore"_s, u"C"_s, u"--ignore"_s, u"D"_s, u"L.DDB"_s, u"S.DDB"_s}), "same: T\n");
}

TEST_P(DiffFormsTest, OnlyTheNamedTables) {
    makePair();
    EXPECT_EQ(done({u"diff"_s, u"--table"_s, u"same"_s, u"L.DDB"_s, u"R.DDB"_s}), "same: Same\n");
    ASSERT_TRUE(QFile::copy(path(u"L.DDB"_s), path(u"-L.DDB"_s)));
    EXPECT_EQ(done({u"diff"_s, u"--table"_s, u"same"_s, u"--"_s, u"-L.DDB"_s, u"R.DDB"_s}), "same: Same\n");
    trouble({u"diff"_s, u"--table"_s, u"Other"_s, u"L.DDB"_s, u"R.DDB"_s},
            "qirdb: L.DDB, R.DDB: there is no table \"Other\"");
}

TEST_P(DiffFormsTest, AKeyThatIsNotThereIsTrouble) {
    makePair();
    const auto withKey = [](const QString &key) {
        return QStringList{u"diff"_s, u"--key"_s, key, u"L.DDB"_s, u"R.DDB"_s};
    };
    trouble(withKey(u"Other:Name"_s), "qirdb: L.DDB, R.DDB: there is no table \"Other\"");
    trouble(withKey(u"Pumps:Nome"_s), "qirdb: L.DDB, R.DDB: the table \"Pumps\" lacks a field of the key: Nome");
    trouble(withKey(u"Old"_s), "qirdb: L.DDB, R.DDB: no table has the fields of the key on both sides: Old");
    trouble(withKey(u"Pumps:"_s), "qirdb: a key is [TABLE:]FIELD[,FIELD..]: Pumps:");
    trouble({u"diff"_s, u"--ignore"_s, u"Nome"_s, u"L.DDB"_s, u"R.DDB"_s},
            "qirdb: L.DDB, R.DDB: no table has the field \"Nome\" to ignore");
}

TEST_P(DiffFormsTest, ReadsKeysFromAFile) {
    makePair();
    write(u"keys.txt"_s, "# of the pumps\n\nPumps:Name,Speed\r\n");
    EXPECT_THAT(different({u"--key-file"_s, u"keys.txt"_s}, sameIsUnkeyed).toStdString(),
                HasSubstr("differs: Pumps (by Name, Speed: 2 added, 2 removed"));
    write(u"keys.txt"_s, "Name\n");
    trouble({u"diff"_s, u"--key-file"_s, u"keys.txt"_s, u"L.DDB"_s, u"R.DDB"_s},
            "qirdb: keys.txt: a line is TABLE:FIELD,..: Name");
}

TEST_P(DiffFormsTest, NamesWithColonsAndCommasAreEscaped) {
    make(u"L.DDB"_s, {{u"T"_s, "\"a:b,c[long]\"\n1\n"}});
    EXPECT_EQ(done({u"diff"_s, u"--key"_s, u"a\\:b\\,c"_s, u"L.DDB"_s, u"L.DDB"_s}), "same: T (by a:b,c)\n");
}

TEST_P(DiffFormsTest, ThePageEscapesEverythingAndNeedsNoColour) {
    make(u"L.DDB"_s, {{u"<b>&"_s, "<i>[text]\n<script>alert(1)</script>\n"}});
    make(u"R.DDB"_s, {{u"<b>&"_s, "<i>[text]\n\"\"\"'\"\n"}});
    const QByteArray page = different({u"--html"_s});
    EXPECT_THAT(page.toStdString(), HasSubstr("&lt;script&gt;alert(1)&lt;/script&gt;"));
    EXPECT_THAT(page.toStdString(), HasSubstr("&quot;&#39;"));
    EXPECT_THAT(page.toStdString(), HasSubstr("<bdi>&lt;b&gt;&amp;</bdi>"));
    EXPECT_THAT(page.toStdString(), Not(HasSubstr("<script")));
    EXPECT_THAT(page.toStdString(), HasSubstr("title=\"differs\">&ne;</span>"));
    EXPECT_THAT(page.toStdString(), HasSubstr("prefers-color-scheme: dark"));
    EXPECT_THAT(page.toStdString(), Not(HasSubstr("http://")));
    EXPECT_TRUE(page.endsWith("</html>\n"));
}

TEST_P(DiffFormsTest, ThePageTellsPositionsAndKeys) {
    makePair();
    const std::string byPosition = different({u"--html"_s}).toStdString();
    EXPECT_THAT(byPosition, HasSubstr("by position"));
    const std::string byKey = different({u"--html"_s, u"--key"_s, u"Name"_s}, sameIsUnkeyed).toStdString();
    EXPECT_THAT(byKey, HasSubstr("1 added, 1 removed, 1 changed, 0 moved"));
    EXPECT_THAT(byKey, HasSubstr("<del>7</del> &rarr; <ins>8</ins>"));
    EXPECT_THAT(byKey, Not(HasSubstr("1500 ")));
    const std::string summary = different({u"--html"_s, u"--summary"_s}).toStdString();
    EXPECT_THAT(summary, Not(HasSubstr("<h2 id")));
    EXPECT_THAT(summary, Not(HasSubstr("href")));
    EXPECT_THAT(byKey, HasSubstr("<a href=\"#t1\">"));
}

TEST_P(DiffFormsTest, ThePageMarksNoCellThatNeitherSideHas) {
    make(u"L.DDB"_s, {{u"T"_s, "A[long]\n1\n2\n"}});
    make(u"R.DDB"_s, {{u"T"_s, "A[long],B[long]\n1,5\n"}});
    const std::string page = different({u"--html"_s}).toStdString();
    EXPECT_THAT(page, HasSubstr("<td><em>nothing</em></td>"));
    EXPECT_THAT(page, Not(HasSubstr("<td class=\"differs\"><em>nothing</em></td>")));
    EXPECT_THAT(page, HasSubstr("<td class=\"number\">2</td><td class=\"number\">2</td>")); // cells, left records
}

TEST_P(DiffFormsTest, ThePageSaysHowManyMovedRecordsItLeavesOut) {
    constexpr int records = 50'003; // in the other order all but one have moved
    QByteArray rising = "K[long]\n";
    QByteArray falling = rising;
    for (int record = 1; record <= records; ++record) {
        rising += QByteArray::number(record) + '\n';
        falling += QByteArray::number(records + 1 - record) + '\n';
    }
    make(u"L.DDB"_s, {{u"T"_s, rising}});
    make(u"R.DDB"_s, {{u"T"_s, falling}});
    const std::string page = done({u"diff"_s, u"--html"_s, u"--key"_s, u"K"_s, u"L.DDB"_s, u"R.DDB"_s}).toStdString();
    EXPECT_THAT(page, HasSubstr("0 changed, 50002 moved"));
    EXPECT_THAT(page, HasSubstr("<p>2 more records moved.</p>"));
}

TEST_P(DiffFormsTest, OneFormAtATime) {
    makePair();
    for (const QString &form : {u"--html"_s, u"--tabular"_s, u"--patch"_s})
        EXPECT_EQ(run({u"diff"_s, form, u"--json"_s, u"L.DDB"_s, u"R.DDB"_s}).status, 2);
    EXPECT_EQ(run({u"diff"_s, u"--patch"_s, u"--ignore-case"_s, u"L.DDB"_s, u"R.DDB"_s}).status, 2);
}

INSTANTIATE_TEST_SUITE_P(Component, DiffFormsTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
