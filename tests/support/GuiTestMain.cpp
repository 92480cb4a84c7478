#include <QApplication>
#include <QIcon>
#include <QStandardPaths>
#include <QStringList>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    // Test discovery runs without the test's environment: never a real display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Themed icons and the panel need the GUI; the private session makes it offscreen.
    const QApplication application(argc, argv);
    // The offscreen platform has no icon theme; give it the freedesktop one a
    // desktop session would.
    QStringList iconDirectories;
    for (const QString &data : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation))
        iconDirectories << data + QStringLiteral("/icons");
    QIcon::setThemeSearchPaths(iconDirectories);
    QIcon::setThemeName(QStringLiteral("hicolor"));
    return RUN_ALL_TESTS();
}
