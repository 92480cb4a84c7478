#include "app/ui/Theme.h"

#include <QTest>
#include <QWidget>

class ThemeTest : public QObject
{
    Q_OBJECT

private slots:
    void opacitiesFollowAppearanceAndContrast_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::addColumn<bool>("contrast");
        QTest::addColumn<qreal>("fill");
        QTest::addColumn<qreal>("border");
        QTest::addColumn<qreal>("selectedRow");
        QTest::newRow("light") << false << false << 0.045 << 0.06 << 0.12;
        QTest::newRow("dark") << true << false << 0.06 << 0.16 << 0.12;
        QTest::newRow("light, increased contrast") << false << true << 0.045 << 0.35 << 0.22;
        QTest::newRow("dark, increased contrast") << true << true << 0.06 << 0.35 << 0.22;
    }
    void opacitiesFollowAppearanceAndContrast()
    {
        QFETCH(bool, dark);
        QFETCH(bool, contrast);
        QFETCH(qreal, fill);
        QFETCH(qreal, border);
        QFETCH(qreal, selectedRow);
        const Theme theme =
            Theme::fromPalette(Theme::standardPalette(dark), DisplayPreferences{contrast, false, false});
        QCOMPARE(theme.dark, dark);
        QCOMPARE(theme.surfaceFill().rgb(), theme.primary.rgb());
        QVERIFY(qAbs(theme.surfaceFill().alphaF() - fill) < 0.005);
        QVERIFY(qAbs(theme.surfaceBorder().alphaF() - border) < 0.005);
        QCOMPARE(theme.selectedRowOpacity(), selectedRow);
    }

    void reducedTransparencyFillsSolidly()
    {
        const QPalette palette = Theme::standardPalette(true);
        const Theme theme = Theme::fromPalette(palette, DisplayPreferences{false, true, false});
        QCOMPARE(theme.surfaceFill(), palette.color(QPalette::Base));
        QCOMPARE(theme.surfaceFill().alpha(), 255);
    }

    void preferencesReachDescendants()
    {
        QWidget root;
        QWidget child(&root);
        Theme::setPreferences(&root, DisplayPreferences{true, false, false});
        QVERIFY(Theme::of(&child).preferences.increasedContrast);
        QVERIFY(!Theme::of(nullptr).preferences.increasedContrast);
    }
};

QObject *makeThemeTest()
{
    return new ThemeTest;
}

#include "ThemeTest.moc"
