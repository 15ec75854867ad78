#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QPaintEvent>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

/// What of a widget is drawn while this lives.
class DrawnRegion : public QObject {
public:
    explicit DrawnRegion(QWidget &widget) { widget.installEventFilter(this); }

    /// Records that the drawn part reaches over, rounded up.
    int recordsOf(const Grid &grid) const {
        const int height = m_region.boundingRect().height();
        const int rowHeight = grid.verticalHeader()->sectionSize(0);
        return (height + rowHeight - 1) / rowHeight;
    }
    bool isEmpty() const { return m_region.isEmpty(); }

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Paint)
            m_region += static_cast<QPaintEvent *>(event)->region();
        return QObject::eventFilter(watched, event);
    }

private:
    QRegion m_region;
};

QStringList manyNumbers() {
    QStringList texts;
    for (int i = 1; i <= 60; ++i)
        texts += QString::number(i % 10);
    return texts;
}

} // namespace

/// What a keystroke draws again: a large screen full of cells costs more than all else that it does.
class EditDrawingTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void aKeystrokeThatMakesACellDifferDrawsTheCellAndTheHeaderOfItsRowAlone() {
        EditorFixture fixture;
        openBoth(fixture, {numbers(u"T"_s, manyNumbers())}, {numbers(u"T"_s, manyNumbers())});
        beginEdit(fixture, 0, 5, 1);
        drawAll();
        const DrawnRegion cells(*fixture.grid(0).viewport());
        const DrawnRegion otherCells(*fixture.grid(1).viewport());
        const DrawnRegion header(*fixture.grid(0).verticalHeader()->viewport());
        const DrawnRegion otherHeader(*fixture.grid(1).verticalHeader()->viewport());
        hands::key(&fixture.cellEditor(0), '7');
        drawAll();
        QCOMPARE(redCells(fixture, 1), (Cells{{5, 1}}));
        QVERIFY(!otherCells.isEmpty());
        QVERIFY(!header.isEmpty());
        QVERIFY(!otherHeader.isEmpty());
        for (const DrawnRegion *drawn : {&cells, &otherCells, &header, &otherHeader})
            QVERIFY2(drawn->recordsOf(fixture.grid(0)) <= 2,
                     qPrintable(QString::number(drawn->recordsOf(fixture.grid(0)))));
    }

    void aTextThatIsNotWhatIsStoredDrawsItsCellAlone() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, manyNumbers())}));
        beginEdit(fixture, 0, 5, 1);
        drawAll();
        const DrawnRegion cells(*fixture.grid(0).viewport());
        hands::key(&fixture.cellEditor(0), 'x');
        drawAll();
        QVERIFY(fixture.grid(0).isUnlikeStored(5, 1));
        QVERIFY(!cells.isEmpty());
        QVERIFY2(cells.recordsOf(fixture.grid(0)) <= 2, qPrintable(QString::number(cells.recordsOf(fixture.grid(0)))));
    }

private:
    static void drawAll() {
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
    }
};

QTEST_MAIN(EditDrawingTest)
#include "edit_drawing_test.moc"
