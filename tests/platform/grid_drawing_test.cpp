#include "platform/grid/CellTextDrawing.h"
#include "platform/grid/ColumnMeasure.h"
#include "platform/grid/Grid.h"
#include "tests/platform/GridTesting.h"

#include <QFontMetrics>
#include <QHelpEvent>
#include <QImage>
#include <QRegularExpression>
#include <QToolTip>
#include <QtTest>

using namespace qir;
using namespace qir::testing;
using namespace Qt::StringLiterals;

class GridDrawingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() {
        QToolTip::hideText();
        m_grid.reset();
    }

    void cellsAreWhiteAndRedToThePixel();
    void cellsAreWhiteInADarkScheme();
    void theCurrentCellKeepsItsColour();
    void theCurrentCellIsSeenOnEveryColour_data();
    void theCurrentCellIsSeenOnEveryColour();
    void selectedCellsShowWhetherTheyAreRed();
    void aHiddenGridDrawsNothingNew();
    void theRowHeaderMarksTheCurrentRow();
    void aFittedColumnCutsNoText();
    void aTextWithTabsOrLineEndsIsDrawnAsWideAsItIsMeasured_data();
    void aTextWithTabsOrLineEndsIsDrawnAsWideAsItIsMeasured();
    void aTextWithTabsThatIsCutStaysInItsCell();
    void aTextStandsWhereItsAlignmentSays();
    void aLongTextIsCutWithoutLayingItAllOut();
    void aTextWithSeveralLinesIsOneLine();
    void aCutOffTextIsTheToolTip();
    void aTextShownInFullHasNoToolTip();
    void aToolTipShowsMarkupAsText();

private:
    /// A pixel of a cell that no text and no frame reaches.
    QColor background(int row, int column) const {
        const QRect cell = m_grid->visualRect(m_grid->model()->index(row - 1, column - 1));
        return m_grid->viewport()->grab().toImage().pixelColor(cell.right() - 6, cell.top() + 3);
    }
    QImage cell(int row, int column) const {
        const QRect area = m_grid->visualRect(m_grid->model()->index(row - 1, column - 1));
        return m_grid->viewport()->grab(area).toImage();
    }
    /// The first and the last column of dark pixels in a cell.
    std::pair<int, int> textColumns(int row, int column) const {
        const QImage image = cell(row, column);
        std::pair<int, int> columns{image.width(), -1};
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (image.pixelColor(x, y).lightness() < 100)
                    columns = {std::min(columns.first, x), x};
            }
        }
        return columns;
    }
    QString toolTip(int row, int column) {
        QToolTip::hideText();
        const QPoint at = cellCentre(*m_grid, row, column);
        QHelpEvent event(QEvent::ToolTip, at, m_grid->viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(m_grid->viewport(), &event);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    }

    std::unique_ptr<Grid> m_grid;
};

void GridDrawingTest::init() {
    m_grid = shownGrid(20, 3);
    for (int row = 1; row <= 20; ++row)
        for (int column = 1; column <= 3; ++column)
            m_grid->setTextMatrix(row, column, u"t"_s); // on the left, out of the way
}

void GridDrawingTest::cellsAreWhiteAndRedToThePixel() {
    m_grid->setCellBackColor(3, 2, CellColour::Red);
    QCOMPARE(background(3, 2), QColor(255, 0, 0));
    QCOMPARE(background(2, 2), QColor(255, 255, 255));
    m_grid->setCellBackColor(3, 2, CellColour::White);
    QCOMPARE(background(3, 2), QColor(255, 255, 255));
}

void GridDrawingTest::cellsAreWhiteInADarkScheme() {
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(20, 20, 20));
    dark.setColor(QPalette::Window, QColor(40, 40, 40));
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::WindowText, Qt::white);
    m_grid->setPalette(dark);
    QCOMPARE(background(2, 2), QColor(255, 255, 255));
    const QRect cell = m_grid->visualRect(m_grid->model()->index(2, 1));
    const QImage image = m_grid->viewport()->grab(cell).toImage();
    int darkest = 255;
    for (int y = 3; y < image.height() - 3; ++y)
        for (int x = 3; x < image.width() - 3; ++x)
            darkest = std::min(darkest, image.pixelColor(x, y).lightness());
    QVERIFY2(darkest < 80, "the text is not black on the white cell");
}

void GridDrawingTest::theCurrentCellKeepsItsColour() {
    m_grid->setCellBackColor(3, 2, CellColour::Red);
    m_grid->setSelection(singleCell(3, 2));
    QCOMPARE(background(3, 2), QColor(255, 0, 0));
    m_grid->setSelection({2, 2, 4, 2});
    QCOMPARE(background(2, 2), QColor(255, 255, 255));
}

void GridDrawingTest::theCurrentCellIsSeenOnEveryColour_data() {
    QTest::addColumn<CellColour>("colour");
    QTest::addColumn<bool>("focused");
    QTest::newRow("white") << CellColour::White << true;
    QTest::newRow("red") << CellColour::Red << true;
    QTest::newRow("white, without the focus") << CellColour::White << false;
    QTest::newRow("red, without the focus") << CellColour::Red << false;
}

void GridDrawingTest::theCurrentCellIsSeenOnEveryColour() {
    QFETCH(const CellColour, colour);
    QFETCH(const bool, focused);
    for (const QColor &highlight : {QColor(48, 140, 198), QColor(Qt::white), QColor(Qt::red)}) {
        QPalette palette;
        palette.setColor(QPalette::Highlight, highlight);
        m_grid->setPalette(palette);
        m_grid->setCellBackColor(3, 2, colour);
        m_grid->setSelection(singleCell(3, 2));
        focused ? m_grid->setFocus() : m_grid->clearFocus();
        const QImage image = cell(3, 2);
        // A black line along every edge, a white one inside it, then the cell's own colour.
        const int blackLine = focused ? 2 : 1;
        const QColor ground = colour == CellColour::Red ? QColor(Qt::red) : QColor(Qt::white);
        for (const bool mirrored : {false, true}) {
            const QImage seen = mirrored ? image.mirrored(true, true) : image;
            for (int depth = 0; depth <= blackLine + 1; ++depth) {
                const QColor expected = depth < blackLine    ? QColor(Qt::black)
                                        : depth == blackLine ? QColor(Qt::white)
                                                             : ground;
                QCOMPARE(seen.pixelColor(seen.width() / 2, depth), expected);
                QCOMPARE(seen.pixelColor(depth, depth), expected);
            }
        }
    }
}

void GridDrawingTest::selectedCellsShowWhetherTheyAreRed() {
    m_grid->setCellBackColor(3, 2, CellColour::Red);
    m_grid->setSelection({2, 1, 5, 3});
    QVERIFY(background(4, 2) != QColor(255, 255, 255));
    QVERIFY(background(3, 2) != background(4, 2));
    QVERIFY(background(3, 2).red() > background(3, 2).blue());
    QCOMPARE(background(6, 2), QColor(255, 255, 255));
}

void GridDrawingTest::aHiddenGridDrawsNothingNew() {
    int paints = 0;
    struct Counter : QObject {
        explicit Counter(int &count)
            : m_count(count) {}
        bool eventFilter(QObject *, QEvent *event) override {
            m_count += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
        int &m_count;
    } counter(paints);
    QCoreApplication::processEvents();
    m_grid->viewport()->installEventFilter(&counter);
    {
        const GridHidden hidden(*m_grid);
        m_grid->setCellBackColor(3, 2, CellColour::Red);
        QCoreApplication::processEvents();
        QCOMPARE(paints, 0);
    }
    QTRY_VERIFY(paints > 0);
}

void GridDrawingTest::theRowHeaderMarksTheCurrentRow() {
    const auto header = [&](int row) {
        const QHeaderView *rows = m_grid->verticalHeader();
        return m_grid->verticalHeader()
            ->viewport()
            ->grab(QRect(0, rows->sectionViewportPosition(row - 1), rows->width(), rows->sectionSize(row - 1)))
            .toImage();
    };
    const QImage plain = header(7);
    m_grid->setSelection(singleCell(7, 1));
    QVERIFY(header(7) != plain);
    m_grid->setSelection(singleCell(9, 1));
    QCOMPARE(header(7), plain);
}

void GridDrawingTest::aFittedColumnCutsNoText() {
    const QFontMetrics metrics(m_grid->font());
    for (const QString &text :
         {u"i"_s, u"wide WWW"_s, u"Speed [long]"_s, u"-123456.789"_s, QString(u"\u00e8\u4e2d"_s)}) {
        const int twips = qRound(QFontMetricsF(m_grid->font()).horizontalAdvance(u' ' + text) * 15) + 60;
        m_grid->setColWidth(1, twips);
        // A grid line takes the last pixel of a cell.
        QCOMPARE(fittedText(metrics, text, m_grid->columnWidth(0) - 1), text);
        QVERIFY(!isCutOff(metrics, text, m_grid->columnWidth(0) - 1));
    }
}

void GridDrawingTest::aTextWithTabsOrLineEndsIsDrawnAsWideAsItIsMeasured_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("one") << u"a\tb"_s;
    QTest::newRow("behind a long part") << u"a rather long part\tb"_s;
    QTest::newRow("several") << u"\ta\t\tbb\tc"_s;
    QTest::newRow("beside a line end") << u"a\nb\tc"_s;
    QTest::newRow("line ends") << u"a\nb\nc\nd\ne\nf\ng\nh\ni\nj"_s;
    QTest::newRow("carriage returns") << u"a\rb\rc\rd\re\rf\rg\rh\ri\rj"_s;
    QTest::newRow("line ends of both kinds") << u"a\r\nb\r\nc\r\nd\r\ne\r\nf\r\ng\r\nh"_s;
    QTest::newRow("line separators") << u"a\u2028b\u2028c\u2028d\u2028e\u2028f"_s;
    QTest::newRow("paragraph separators") << u"a\u2029b\u2029c\u2029d\u2029e\u2029f"_s;
}

void GridDrawingTest::aTextWithTabsOrLineEndsIsDrawnAsWideAsItIsMeasured() {
    QFETCH(const QString, text);
    m_grid->setTextMatrix(3, 2, text);
    measureColumns(*m_grid, m_grid->font(), 1);
    m_grid->setSelection(singleCell(1, 1));
    // Measured with a blank in front, which is not shown.
    const QFontMetricsF metrics(m_grid->font());
    const QRegularExpression lineEnd(u"[\\n\\r\\x{2028}\\x{2029}]"_s);
    const QString line = QString(u' ' + text).replace(lineEnd, u" "_s);
    const qreal width = metrics.horizontalAdvance(line) - metrics.horizontalAdvance(u' ');
    const int end = textColumns(3, 2).second;
    QVERIFY2(end > width - 3 && end <= width + cellMargin, qPrintable(u"%1 of %2"_s.arg(end).arg(width)));
    const QFontMetrics whole(m_grid->font());
    QVERIFY(fittedText(whole, text, m_grid->columnWidth(1) - 1).endsWith(text.back()));
    QCOMPARE(isCutOff(whole, text, m_grid->columnWidth(1) - 1), text.contains(lineEnd));
}

void GridDrawingTest::aTextWithTabsThatIsCutStaysInItsCell() {
    m_grid->setTextMatrix(3, 2, u"aaa\tbbb\tccc\tddd"_s);
    m_grid->setTextMatrix(3, 3, QString());
    const QFontMetrics metrics(m_grid->font());
    for (const int width : {30, 90, 100, 150, 200, 255}) {
        m_grid->setColWidth(2, width * 15);
        m_grid->setSelection(singleCell(1, 1));
        const int room = m_grid->columnWidth(1) - 1 - 2 * cellMargin;
        QVERIFY(metrics.horizontalAdvance(fittedText(metrics, m_grid->TextMatrix(3, 2), width - 1)) <= room);
        QVERIFY(textColumns(3, 2).second <= room + cellMargin);
        QVERIFY(isCutOff(metrics, m_grid->TextMatrix(3, 2), width - 1));
    }
}

void GridDrawingTest::aTextStandsWhereItsAlignmentSays() {
    m_grid->setTextMatrix(3, 2, u"12"_s);
    m_grid->setTextMatrix(3, 3, u"HH"_s);
    m_grid->setSelection(singleCell(1, 1));
    const int width = cell(3, 2).width();
    QVERIFY(textColumns(3, 2).first > width / 2);
    QVERIFY(textColumns(3, 2).second >= width - 6);
    QVERIFY(textColumns(3, 3).first <= 5);
    const auto back = qScopeGuard([] { QGuiApplication::setLayoutDirection(Qt::LeftToRight); });
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    QVERIFY(textColumns(3, 2).first <= 5);
    QVERIFY(textColumns(3, 3).second >= width - 6);
}

void GridDrawingTest::aLongTextIsCutWithoutLayingItAllOut() {
    const QFontMetrics metrics(m_grid->font());
    const QString text(5000000, u'x');
    const QString fitted = fittedText(metrics, text, 100);
    QVERIFY(fitted.endsWith(QChar(0x2026)));
    QVERIFY(fitted.size() < 100);
    QVERIFY(isCutOff(metrics, text, 100));
}

void GridDrawingTest::aTextWithSeveralLinesIsOneLine() {
    const QFontMetrics metrics(m_grid->font());
    QVERIFY(isCutOff(metrics, u"a\nb"_s, 1000));
    QVERIFY(isCutOff(metrics, u"a\rb"_s, 1000));
    QVERIFY(!isCutOff(metrics, u"a b"_s, 1000));
}

void GridDrawingTest::aCutOffTextIsTheToolTip() {
    const QString longText = u"this text does not fit into a column of such a width"_s;
    m_grid->setTextMatrix(2, 2, longText);
    m_grid->setColWidth(2, 900);
    QCOMPARE(toolTip(2, 2), longText);
}

void GridDrawingTest::aTextShownInFullHasNoToolTip() {
    QCOMPARE(toolTip(2, 2), QString());
    m_grid->setTextMatrix(2, 2, QString());
    m_grid->setColWidth(2, 60);
    QCOMPARE(toolTip(2, 2), QString());
}

void GridDrawingTest::aToolTipShowsMarkupAsText() {
    m_grid->setTextMatrix(2, 2, u"<b>not bold but quite a long text all the same</b>"_s);
    m_grid->setColWidth(2, 900);
    QVERIFY(toolTip(2, 2).contains(u"&lt;b&gt;"_s));
}

QTEST_MAIN(GridDrawingTest)
#include "grid_drawing_test.moc"
