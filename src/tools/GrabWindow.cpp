// Saves what an X11 window shows as a PNG: how scripts/run takes pictures of
// the running instance on its virtual display, with no image tools installed.
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s <window id> <file.png>\n", argv[0]);
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", QByteArrayLiteral("xcb"));
    const QGuiApplication application(argc, argv);
    bool valid = false;
    const WId window = QByteArray(argv[1]).toULongLong(&valid, 0);
    const QPixmap picture = valid ? QGuiApplication::primaryScreen()->grabWindow(window) : QPixmap();
    if (picture.isNull() || !picture.save(QString::fromLocal8Bit(argv[2]))) {
        std::fprintf(stderr, "cannot save window %s into %s\n", argv[1], argv[2]);
        return 1;
    }
    return 0;
}
