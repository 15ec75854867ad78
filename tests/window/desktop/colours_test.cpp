#include "app/look/Colours.h"
#include "app/look/Schemes.h"
#include "app/look/TickBoxes.h"
#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QCheckBox>
#include <QMetaEnum>
#include <QStyleOption>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// The colour schemes and their menu.
class ColoursTest : public WindowTest {
    Q_OBJECT

    static constexpr double leastContrast = 4.5;

    static QString problemsOf(const QPalette &palette, const QString &scheme) {
        using Role = QPalette::ColorRole;
        const std::vector<std::pair<Role, std::vector<Role>>> grounds{
            {QPalette::Window,
             {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::Link, QPalette::LinkVisited,
              QPalette::BrightText, QPalette::PlaceholderText}},
            {QPalette::Base,
             {QPalette::Text, QPalette::WindowText, QPalette::Link, QPalette::LinkVisited, QPalette::PlaceholderText}},
            {QPalette::AlternateBase, {QPalette::Text, QPalette::Link, QPalette::LinkVisited}},
            {QPalette::Button, {QPalette::ButtonText, QPalette::WindowText}},
            {QPalette::Highlight, {QPalette::HighlightedText}},
            {QPalette::ToolTipBase, {QPalette::ToolTipText}},
        };
        QString problems;
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            for (const auto &[ground, texts] : grounds) {
                for (const Role text : texts) {
                    const double found = contrast(palette.color(group, ground), palette.color(group, text));
                    if (found < leastContrast)
                        problems +=
                            u"%1: role %2 on %3 (group %4) has %5; "_s.arg(scheme).arg(text).arg(ground).arg(group).arg(
                                found);
                }
            }
        }
        return problems;
    }

private Q_SLOTS:
    void contrastIsCountedAsTheGuidelinesSay() {
        QCOMPARE(contrast(Qt::black, Qt::white), 21.0);
        QCOMPARE(contrast(Qt::red, Qt::red), 1.0);
        QVERIFY(qAbs(contrast(QColor(0x77, 0x77, 0x77), Qt::white) - 4.48) < 0.01);
    }

    void everyTextOfBothSchemesIsReadable() {
        QCOMPARE(problemsOf(lightScheme(), u"light"_s), QString());
        QCOMPARE(problemsOf(darkScheme(), u"dark"_s), QString());
        QVERIFY(!isDark(lightScheme()));
        QVERIFY(isDark(darkScheme()));
    }

    void boxesToTickAreSeenInEitherScheme() {
        constexpr double leastOfFrames = 3; // as the guidelines ask for parts that are no text
        TickBoxes style;
        for (const QPalette &palette : {lightScheme(), darkScheme()}) {
            QCheckBox box;
            box.setStyle(&style);
            box.setPalette(palette);
            box.ensurePolished();
            box.resize(box.sizeHint());
            QStyleOptionButton option;
            option.initFrom(&box);
            const QRect frame = style.subElementRect(QStyle::SE_CheckBoxIndicator, &option, &box);
            const QImage picture = box.grab().toImage();
            double most = 0;
            for (int x = frame.left() - 1; x <= frame.left() + 1; ++x)
                most = std::max(most, contrast(picture.pixelColor(std::max(x, 0), frame.center().y()),
                                               palette.color(QPalette::Window)));
            QVERIFY2(!isDark(palette) || most >= leastOfFrames, qPrintable(QString::number(most)));
            QVERIFY(most > 1);
        }
    }

    void theGivenColoursAreReadableInBlack() {
        for (const QColor &ground : {QColor(255, 255, 255), QColor(255, 0, 0), QColor(255, 255, 0)})
            QVERIFY(contrast(ground, Qt::black) >= leastContrast);
    }

    void theMenuChangesTheWindowsAndTheChoiceIsKept() {
        const QPalette before = QApplication::palette();
        {
            EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
            QVERIFY(fixture.action(Command::ColoursSystemMenu).isChecked());
            fixture.choose(Command::ColoursDarkMenu);
            QTRY_VERIFY(isDark(fixture.window().palette()));
            QVERIFY(isDark(fixture.list(0).palette()));
            QVERIFY(!fixture.action(Command::ColoursSystemMenu).isChecked());
        }
        QTRY_COMPARE(isDark(QApplication::palette()), isDark(before));
        EditorFixture fixture(path(u"A.DDB"_s));
        QTRY_VERIFY(isDark(fixture.window().palette()));
        fixture.choose(Command::ColoursLightMenu);
        QTRY_VERIFY(!isDark(fixture.window().palette()));
        fixture.choose(Command::ColoursSystemMenu);
        QTRY_COMPARE(fixture.window().palette().color(QPalette::Window), before.color(QPalette::Window));
    }

    void whatTheCellsSayByColourIsTheSameInTheDark() {
        EditorFixture fixture;
        openBoth(fixture, {numbers(u"T"_s, {u"1"_s, u"2"_s})}, {numbers(u"T"_s, {u"1"_s, u"3"_s})});
        fixture.choose(Command::ColoursDarkMenu);
        QTRY_VERIFY(isDark(fixture.window().palette()));
        for (const int pane : {0, 1}) {
            const QAbstractItemModel &model = *fixture.grid(pane).model();
            QCOMPARE(model.index(0, 0).data(Qt::BackgroundRole).value<QBrush>().color(), QColor(255, 255, 255));
            QCOMPARE(model.index(1, 0).data(Qt::BackgroundRole).value<QBrush>().color(), QColor(255, 0, 0));
        }
        QCOMPARE(fixture.frame(0).palette().color(QPalette::Window), QColor(255, 255, 0));
        QCOMPARE(fixture.label(0).palette().color(QPalette::WindowText), QColor(Qt::black));
        const QPalette other = fixture.frame(1).palette();
        QVERIFY(contrast(other.color(QPalette::Window), other.color(QPalette::WindowText)) >= leastContrast);
    }

    void everyTextOnScreenIsReadableInBothSchemes_data() {
        QTest::addColumn<Command>("scheme");
        QTest::newRow("light") << Command::ColoursLightMenu;
        QTest::newRow("dark") << Command::ColoursDarkMenu;
    }

    void everyTextOnScreenIsReadableInBothSchemes() {
        QFETCH(Command, scheme);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.choose(Command::TwoMenu);
        fixture.choose(scheme);
        QTRY_COMPARE(isDark(fixture.window().palette()), scheme == Command::ColoursDarkMenu);
        for (const QWidget *control : fixture.window().findChildren<QWidget *>()) {
            if (!control->isVisible())
                continue;
            const QPalette &palette = control->palette();
            const QString name = control->objectName();
            QVERIFY2(contrast(palette.color(QPalette::Window), palette.color(QPalette::WindowText)) >= leastContrast,
                     qPrintable(name));
            QVERIFY2(contrast(palette.color(QPalette::Base), palette.color(QPalette::Text)) >= leastContrast,
                     qPrintable(name));
        }
    }
};

QTEST_MAIN(ColoursTest)
#include "colours_test.moc"
