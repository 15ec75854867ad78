#include "app/Layout.h"
#include "platform/controls/Twips.h"
#include "tests/window/LayoutCheck.h"
#include "tests/window/WindowTest.h"

#include <QAccessible>
#include <QGroupBox>
#include <QHelpEvent>
#include <QLabel>
#include <QProgressBar>
#include <QToolTip>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

/// Sets the application's font while it lives.
class FontSize {
public:
    explicit FontSize(int points)
        : m_before(QApplication::font()) {
        QFont font = m_before;
        font.setPointSize(points);
        QApplication::setFont(font);
    }
    ~FontSize() { QApplication::setFont(m_before); }
    FontSize(const FontSize &) = delete;
    FontSize &operator=(const FontSize &) = delete;

private:
    QFont m_before;
};

} // namespace

/// Where everything stands in the window.
class LayoutTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void onePaneFillsTheWindowByTheGivenMeasures_data() { windowSizes(); }

    void onePaneFillsTheWindowByTheGivenMeasures() {
        QFETCH(QSize, size);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fixture.window().resize(size);
        QCOMPARE(fixture.window().size(), size);
        const QRect frame = fixture.frame(0).geometry();
        QCOMPARE(frame, QRect(toPixels(50), 0, size.width() - toPixels(200), size.height() - toPixels(900)));
        checkInside(fixture, 0);
    }

    void twoPanesStandSideBySideByTheGivenMeasures_data() { windowSizes(); }

    void twoPanesStandSideBySideByTheGivenMeasures() {
        QFETCH(QSize, size);
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}),
                         makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fixture.window().resize(size);
        const int width = (size.width() - toPixels(200)) / 2;
        const int height = size.height() - toPixels(900);
        QCOMPARE(fixture.frame(0).geometry(), QRect(toPixels(50), 0, width, height));
        QCOMPARE(fixture.frame(1).geometry(), QRect(width + toPixels(50), 0, width, height));
        for (const int pane : {0, 1})
            checkInside(fixture, pane);
    }

    void theWindowHasItsLeastSize() {
        EditorFixture fixture;
        fixture.window().resize(10, 10);
        QCOMPARE(fixture.window().size(), QSize(200, toPixels(5000)));
        QCOMPARE(minimumWindowSize(), fixture.window().size());
    }

    void nothingIsLaidOutWhileTheWindowIsMinimised() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fixture.window().setWindowState(Qt::WindowMinimized);
        QVERIFY(fixture.window().isMinimized());
        fixture.frame(0).setGeometry(1, 2, 3, 4);
        RicalcolaSistemazioneForm(fixture.editor());
        QCOMPARE(fixture.frame(0).geometry(), QRect(1, 2, 3, 4));
    }

    void nothingIsCutOffOrOverlapsInAnyFont_data() {
        QTest::addColumn<int>("points");
        QTest::addColumn<bool>("two");
        QTest::addColumn<QSize>("size");
        for (const int points : {8, 11, 16, 24})
            for (const bool two : {false, true})
                for (const QSize size : {QSize(1000, 700), QSize(500, 420)})
                    QTest::addRow("%d points, %d panes, %d wide", points, two ? 2 : 1, size.width())
                        << points << two << size;
    }

    void nothingIsCutOffOrOverlapsInAnyFont() {
        QFETCH(int, points);
        QFETCH(bool, two);
        QFETCH(QSize, size);
        const FontSize font(points);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        if (two)
            fixture.choose(Command::TwoMenu);
        fixture.window().resize(size);
        fixture.progressBar().show();
        QCOMPARE(layoutProblems(fixture.window()), QString());
        if (two) {
            fixture.activate(1);
            fixture.open(makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
            QCOMPARE(layoutProblems(fixture.window()), QString());
        }
    }

    void aFontThatChangesWhileTheWindowStandsIsLaidOutAnew() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        const FontSize font(24);
        QTRY_COMPARE(layoutProblems(fixture.window()), QString());
    }

    void aNameThatIsTooLongForItsPlaceKeepsItsEndReadable() {
        EditorFixture fixture(makeFile(QString(60, u'x') + u".DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        QLabel &label = fixture.label(0);
        fixture.window().resize(300, 400);
        QVERIFY(label.fontMetrics().horizontalAdvance(label.text()) > label.width());
        QVERIFY(label.text().endsWith(u".DDB"_s)); // whole for who reads it
        QHelpEvent help(QEvent::ToolTip, QPoint(2, 2), label.mapToGlobal(QPoint(2, 2)));
        QApplication::sendEvent(&label, &help);
        QVERIFY2(QToolTip::text().startsWith(label.text()), qPrintable(QToolTip::text()));
        QToolTip::hideText();
        const QImage cut = label.grab().toImage();
        fixture.window().resize(2000, 400);
        QVERIFY(label.grab().toImage() != cut);
    }

    void anEmptyPaneShowsTheFramesOwnColourAndAFullOneTheWindowsUnderItsTable() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"A.DDB"_s);
        makeDatabase(path, {{u"T"_s, {{u"a"_s, FieldType::Long, {}}}}}); // a table without records: no grid
        EditorFixture fixture;
        fixture.choose(Command::TwoMenu);
        fixture.activate(0);
        const auto colourOf = [&](int pane) { // beside what an empty pane offers in its middle
            const QGroupBox &frame = fixture.frame(pane);
            return const_cast<QGroupBox &>(frame).grab().toImage().pixelColor(frame.width() / 8,
                                                                              frame.height() * 7 / 8);
        };
        const QColor buttonFace = fixture.window().palette().color(QPalette::Button);
        QCOMPARE(colourOf(0), QColor(255, 255, 0));
        QCOMPARE(colourOf(1), buttonFace);
        fixture.activate(1);
        QCOMPARE(colourOf(0), buttonFace);
        QCOMPARE(colourOf(1), QColor(255, 255, 0));
        fixture.activate(0);
        fixture.open(path);
        QCOMPARE(colourOf(0), fixture.window().palette().color(QPalette::Window));
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(colourOf(0), QColor(255, 255, 0));
    }

    void everyControlThatAPersonCanReachHasAnAccessibleName() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fixture.choose(Command::TwoMenu);
        int reached = 0;
        for (const QWidget *control : fixture.window().findChildren<QWidget *>()) {
            if (control->focusPolicy() == Qt::NoFocus || control->objectName().startsWith(u"qt_"))
                continue;
            const auto *label = qobject_cast<const QLabel *>(control);
            if (label != nullptr && label->text().isEmpty() && !label->isVisible())
                continue; // it is named by what it says, and says nothing
            ++reached;
            const QString name =
                QAccessible::queryAccessibleInterface(const_cast<QWidget *>(control))->text(QAccessible::Name);
            QVERIFY2(!name.isEmpty(),
                     qPrintable(control->objectName() + u' ' + QLatin1StringView(control->metaObject()->className())));
        }
        QVERIFY2(reached >= 8, qPrintable(QString::number(reached))); // list, grid, editor and hint of both panes
    }

private:
    static void windowSizes() {
        QTest::addColumn<QSize>("size");
        QTest::newRow("usual") << QSize(1000, 700);
        QTest::newRow("odd") << QSize(1001, 777);
        QTest::newRow("large") << QSize(2400, 1300);
        QTest::newRow("small") << QSize(300, 400);
    }

    /// List, label and grid of a pane, by the given measures.
    static void checkInside(EditorFixture &fixture, int pane) {
        const QSize frame = fixture.frame(pane).size();
        const int width = frame.width() - toPixels(250);
        QCOMPARE(fixture.label(pane).width(), width);
        QCOMPARE(fixture.list(pane).width(), width);
        QCOMPARE(fixture.grid(pane).width(), width);
        QCOMPARE(fixture.grid(pane).height(), frame.height() - fixture.list(pane).height() - toPixels(900));
        QVERIFY(fixture.list(pane).geometry().bottom() < fixture.grid(pane).y());
    }
};

QTEST_MAIN(LayoutTest)
#include "layout_test.moc"
