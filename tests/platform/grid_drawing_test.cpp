#include "platform/controls/CellTextDrawing.h"
#include "platform/controls/Grid.h"
#include "tests/platform/GridTesting.h"

#include <QFontMetrics>
#include <QHelpEvent>
#include <QImage>
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
    void selectedCellsShowWhetherTheyAreRed();
    void aHiddenGridDrawsNothingNew();
    void theRowHeaderMarksTheCurrentRow();
    void aFittedColumnCutsNoText();
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
