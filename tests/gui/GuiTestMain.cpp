#include <QApplication>
#include <QTest>

#include <memory>

QObject *makeAboutPageTest();
QObject *makeComponentsTest();
QObject *makePanelTest();
QObject *makeThemeTest();

// The widget tests share one application; every class runs in turn.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QTEST_SET_MAIN_SOURCE_PATH
    int failures = 0;
    for (auto make : {makeAboutPageTest, makeComponentsTest, makePanelTest, makeThemeTest}) {
        const std::unique_ptr<QObject> test(make());
        failures += QTest::qExec(test.get(), argc, argv);
    }
    return failures;
}
