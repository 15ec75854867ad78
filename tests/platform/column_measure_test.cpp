#include "platform/cells/CellColumn.h"
#include "platform/grid/ColumnMeasure.h"
#include "platform/grid/GridFill.h"
#include "tests/platform/GridTesting.h"
#include "tests/support/Columns.h"

#include <QRegularExpression>
#include <QtTest>
#include <rapidcheck.h>

#include <cmath>

using namespace qir;
using namespace qir::test;
using namespace qir::testing;
using namespace Qt::StringLiterals;

namespace {

/// What a label of the font would say: each text as one line, with a blank in front, laid out.
int measuredOneByOne(const QFont &font, const QString &header, const QStringList &texts) {
    const QFontMetricsF metrics(font);
    const QRegularExpression lineEnd(u"[\\n\\r\\x{2028}\\x{2029}]"_s);
    qreal widest = 0;
    for (QString text : texts + QStringList(header))
        widest = std::max(widest, metrics.horizontalAdvance(u' ' + text.replace(lineEnd, u" "_s)));
    return qRound(widest * 15) + 60;
}

CellColumn packed(const QStringList &texts) {
    CellColumn column;
    for (const QString &text : texts)
        column.append(text);
    return column;
}

QString text(const std::u16string &units) {
    return QString::fromStdU16String(units);
}

/// Texts that look like those of tables, and any others that could upset a sum of characters.
rc::Gen<QString> genText() {
    const auto of = [](const rc::Gen<char16_t> &unit) {
        return rc::gen::map(rc::gen::container<std::u16string>(unit), text);
    };
    const auto between = [](char16_t first, char16_t last) {
        return rc::gen::cast<char16_t>(rc::gen::inRange<int>(first, last + 1));
    };
    const auto digits = rc::gen::map(rc::gen::arbitrary<int>(), [](int number) { return QString::number(number); });
    const auto pairs = rc::gen::element(
        u"AVAVAV"_s, u"To Ty Ta"_s, u"fi fl ffi ffl"_s, u"LTAWAY"_s, u"office"_s, u"a\tb"_s, u"a\nb"_s, u"e\u0301"_s,
        u"\u05d0(1)\u05d1"_s, u"\u0645\u0631\u062d"_s, u"\U0001F600"_s, u"\u4e2d\u6587(12)"_s, u"\u0394x = 3"_s,
        u"\u041f 1"_s, u"\u3042\u30A2\uAC00"_s, u"\u1112\u1161\u11ab"_s, u"\u200d\u00ad\ufeff"_s);
    return rc::gen::oneOf(digits, of(between(0x20, 0x7e)), of(between(0x20, 0xff)), of(between(0x20, 0x24f)),
                          of(between(0x370, 0x52f)), of(between(0x4e00, 0x4e80)), of(between(0x3000, 0x30ff)),
                          of(between(0x2000, 0x26ff)), of(between(1, 0xffff)), pairs,
                          rc::gen::map(rc::gen::pair(digits, pairs), [](const std::pair<QString, QString> &both) {
                              return both.first + both.second;
                          }));
}

QFont plainFont(const QString &family, int points) {
    QFont font(family, points);
    font.setKerning(false);
    font.setStyleStrategy(QFont::PreferNoShaping);
    return font;
}

bool check(const std::string &name, const std::function<void()> &property) {
    return rc::check(name, property);
}

} // namespace

class ColumnMeasureTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTextIsAsWideAsItIsWithABlankInFrontAndSixtyTwips();
    void aColumnIsAsWideAsMeasuringEveryTextSays_data();
    void aColumnIsAsWideAsMeasuringEveryTextSays();
    void valuesOfADatabaseAreMeasuredAsTheirTexts_data() { aColumnIsAsWideAsMeasuringEveryTextSays_data(); }
    void valuesOfADatabaseAreMeasuredAsTheirTexts();
    void aTextWinsOverAnythingJustNarrower_data() { aColumnIsAsWideAsMeasuringEveryTextSays_data(); }
    void aTextWinsOverAnythingJustNarrower();
    void theHeaderTakesPart();
    void anEmptyColumnIsAsWideAsItsHeader();
    void aTextThatCannotWinIsNotLaidOut();
    void equalTextsAreLaidOutOnce();
    void zeroesOfEitherSignAreTwoTexts();
    void textsOfAnotherFontAreAllLaidOut();
    void pausesAreTakenAndMayEndTheMeasuring();
    void aGridIsFittedFromTheFirstColumnOn();
    void aColumnOfWidthZeroIsLeftOut();
    void theGridsFontNeedsFewLayouts();
};

void ColumnMeasureTest::aTextIsAsWideAsItIsWithABlankInFrontAndSixtyTwips() {
    const QFont font = plainFont(u"DejaVu Sans"_s, 9);
    ColumnMeasure measure(font, nullptr);
    QCOMPARE(measure.textWidth(u"Speed [long]"), measuredOneByOne(font, u"Speed [long]"_s, {}));
    QCOMPARE(measure.textWidth({}), measuredOneByOne(font, QString(), {}));
}

void ColumnMeasureTest::aColumnIsAsWideAsMeasuringEveryTextSays_data() {
    QTest::addColumn<QFont>("font");
    QTest::newRow("grid") << Grid().font();
    QTest::newRow("plain small") << plainFont(u"DejaVu Sans"_s, 7);
    QTest::newRow("plain large") << plainFont(u"DejaVu Serif"_s, 23);
    QTest::newRow("fixed pitch") << plainFont(u"DejaVu Sans Mono"_s, 9);
    QFont bold = plainFont(u"DejaVu Sans"_s, 9);
    bold.setBold(true);
    bold.setItalic(true);
    QTest::newRow("bold italic") << bold;
    QTest::newRow("kerned") << QFont(u"DejaVu Serif"_s, 12);
    QFont spaced = plainFont(u"DejaVu Sans"_s, 9);
    spaced.setLetterSpacing(QFont::AbsoluteSpacing, -1);
    QTest::newRow("spaced") << spaced;
    QFont capitals = plainFont(u"DejaVu Sans"_s, 9);
    capitals.setCapitalization(QFont::AllUppercase);
    QTest::newRow("capitals") << capitals;
}

void ColumnMeasureTest::aColumnIsAsWideAsMeasuringEveryTextSays() {
    QFETCH(const QFont, font);
    QVERIFY(check("width of a column", [&font] {
        const auto texts = *rc::gen::container<std::vector<QString>>(genText());
        const QString header = *genText();
        const QStringList list(texts.begin(), texts.end());
        ColumnMeasure measure(font, nullptr);
        RC_ASSERT(measure.columnWidth(header, packed(list)) == measuredOneByOne(font, header, list));
    }));
}

void ColumnMeasureTest::valuesOfADatabaseAreMeasuredAsTheirTexts() {
    QFETCH(const QFont, font);
    const auto decimal =
        rc::gen::map(rc::gen::tuple(rc::gen::inRange<qint64>(-99999999, 99999999), rc::gen::inRange(0, 9)),
                     [](const std::tuple<qint64, int> &parts) {
                         return static_cast<double>(std::get<0>(parts)) / std::pow(10.0, std::get<1>(parts));
                     });
    const auto number =
        rc::gen::oneOf(decimal, rc::gen::cast<double>(rc::gen::arbitrary<int>()),
                       rc::gen::element(0.0, -0.0, 1e15, 999999999999999.0, 1e-5, 9.9e-6, 0.1, 1.0 / 3.0, -1e300,
                                        5e-324, 20260131.0, 20260131.235959, 1e14 + 0.5));
    QVERIFY(check("width of a column of values", [&] {
        const auto type = *rc::gen::element(ColumnType::Bool, ColumnType::Byte, ColumnType::Int, ColumnType::Long,
                                            ColumnType::Double, ColumnType::Date, ColumnType::Text);
        CellColumn column;
        if (type == ColumnType::Text)
            column = columnOf(*rc::gen::container<std::vector<QString>>(genText()), 3, &textBlock);
        else
            column = columnOf(*rc::gen::container<std::vector<double>>(number), 3,
                              [&](const auto &numbers) { return numberBlock(type, numbers); });
        if (column.size() > 0 && *rc::gen::arbitrary<bool>())
            column.set(*rc::gen::inRange<std::size_t>(0, column.size()), *genText());
        QStringList shown;
        for (std::size_t i = 0; i < column.size(); ++i)
            shown.append(column.at(i));
        const QString header = *rc::gen::oneOf(genText(), rc::gen::just(QString()));
        ColumnMeasure measure(font, nullptr);
        RC_ASSERT(measure.columnWidth(header, column) == measuredOneByOne(font, header, shown));
    }));
}

void ColumnMeasureTest::aTextWinsOverAnythingJustNarrower() {
    // The bound of a text must not be below its width: then a column hardly narrower would keep its own.
    QFETCH(const QFont, font);
    QVERIFY(check("bound of a text", [&font] {
        const QString longer = *genText();
        const QFontMetricsF metrics(font);
        const qreal width = metrics.horizontalAdvance(u' ' + longer);
        const qreal dot = std::max(metrics.horizontalAdvance(u'.'), 1.0);
        QString narrower(static_cast<qsizetype>(width / dot), u'.');
        while (!narrower.isEmpty() && metrics.horizontalAdvance(u' ' + narrower) >= width)
            narrower.chop(1);
        ColumnMeasure measure(font, nullptr);
        RC_ASSERT(measure.columnWidth(narrower, packed({longer})) == measuredOneByOne(font, narrower, {longer}));
    }));
}

void ColumnMeasureTest::theHeaderTakesPart() {
    const QFont font = plainFont(u"DejaVu Sans"_s, 9);
    ColumnMeasure measure(font, nullptr);
    QCOMPARE(measure.columnWidth(u"a long header [double]", packed({u"1"_s, u"22"_s})),
             measure.textWidth(u"a long header [double]"));
}

void ColumnMeasureTest::anEmptyColumnIsAsWideAsItsHeader() {
    ColumnMeasure measure(plainFont(u"DejaVu Sans"_s, 9), nullptr);
    QCOMPARE(measure.columnWidth(u"h", CellColumn()), measure.textWidth(u"h"));
    QCOMPARE(measure.columnWidth({}, packed({QString(), QString()})), measure.textWidth({}));
}

void ColumnMeasureTest::aTextThatCannotWinIsNotLaidOut() {
    ColumnMeasure measure(plainFont(u"DejaVu Sans"_s, 9), nullptr);
    QStringList texts{u"100000"_s};
    for (int number = 0; number < 10000; ++number)
        texts.append(QString::number(number));
    measure.columnWidth(u"h", packed(texts));
    QCOMPARE(measure.layouts(), std::size_t{2});
    // Wider ones come one after the other: each of them is.
    measure.columnWidth(u"h", packed({u"1"_s, u"11"_s, u"111"_s, u"11"_s}));
    QCOMPARE(measure.layouts(), std::size_t{6});
    const std::size_t before = measure.layouts();
    measure.columnWidth(u"h", packed({u"\u043f\u043f\u043f\u043f"_s, u"\u043f\u043f"_s, u"\u043f 1"_s}));
    QCOMPARE(measure.layouts(), before + 2);
}

void ColumnMeasureTest::equalTextsAreLaidOutOnce() {
    ColumnMeasure measure(plainFont(u"DejaVu Sans"_s, 9), nullptr);
    QStringList texts;
    for (int i = 0; i < 1000; ++i)
        texts.append(i % 2 == 0 ? u"e\u0301"_s : u"a\tb"_s);
    measure.columnWidth(u"h", packed(texts));
    QCOMPARE(measure.layouts(), std::size_t{3});
}

void ColumnMeasureTest::zeroesOfEitherSignAreTwoTexts() {
    const QFont font = plainFont(u"DejaVu Sans"_s, 9);
    ColumnMeasure measure(font, nullptr);
    CellColumn column;
    column.append(numberBlock(ColumnType::Double, {0.0, -0.0}));
    QCOMPARE(measure.columnWidth({}, column), measuredOneByOne(font, QString(), {u"0"_s, u"-0"_s}));
}

void ColumnMeasureTest::textsOfAnotherFontAreAllLaidOut() {
    ColumnMeasure measure(QFont(u"DejaVu Sans"_s, 9), nullptr);
    measure.columnWidth(u"h", packed({u"wide WWWWWWWW"_s, u"a"_s, u"b"_s, u"a"_s}));
    QCOMPARE(measure.layouts(), std::size_t{4});
}

void ColumnMeasureTest::pausesAreTakenAndMayEndTheMeasuring() {
    ColumnMeasure measure(plainFont(u"DejaVu Sans"_s, 9), nullptr);
    CellColumn texts;
    for (int i = 0; i < 200000; ++i)
        texts.append(u"1");
    int pauses = 0;
    measure.columnWidth(u"h", texts, [&] { ++pauses; });
    QVERIFY(pauses >= 5 && pauses <= 200);
    struct Ended {};
    QVERIFY_EXCEPTION_THROWN(measure.columnWidth(u"h", texts, [] { throw Ended{}; }), Ended);
}

void ColumnMeasureTest::aGridIsFittedFromTheFirstColumnOn() {
    Grid grid;
    fill(grid, 30, 3);
    grid.setTextMatrix(7, 2, u"the widest text of column two"_s);
    grid.setTextMatrix(0, 3, u"a header that is wider than its column [text]"_s);
    const int before = grid.ColWidth(1);
    measureColumns(grid, grid.font(), 2);
    QCOMPARE(grid.ColWidth(1), before);
    QCOMPARE(grid.ColWidth(2), measuredOneByOne(grid.font(), u"the widest text of column two"_s, {}));
    QCOMPARE(grid.ColWidth(3), measuredOneByOne(grid.font(), grid.TextMatrix(0, 3), {}));
    measureColumns(grid, grid.font(), 0);
    QCOMPARE(grid.ColWidth(0), measuredOneByOne(grid.font(), QString(), {}));
    QCOMPARE(grid.ColWidth(1), measuredOneByOne(grid.font(), u"f1"_s, {u"10.1"_s, u"30.1"_s}));
}

void ColumnMeasureTest::aColumnOfWidthZeroIsLeftOut() {
    Grid grid;
    fill(grid, 3, 2);
    grid.setColWidth(1, 0);
    measureColumns(grid, grid.font(), 0);
    QCOMPARE(grid.ColWidth(1), 0);
    grid.setColWidth(1, 100);
    measureColumns(grid, grid.font(), 0);
    QVERIFY(grid.ColWidth(1) > 100);
}

void ColumnMeasureTest::theGridsFontNeedsFewLayouts() {
    Grid grid;
    ColumnMeasure measure(grid.font(), &grid);
    QStringList texts;
    for (int number = 100000; number < 110000; ++number)
        texts.append(QString::number(number));
    measure.columnWidth(u"h", packed(texts));
    QVERIFY2(measure.layouts() <= 3, qPrintable(QString::number(measure.layouts())));
}

QTEST_MAIN(ColumnMeasureTest)
#include "column_measure_test.moc"
