// Renders the application artwork into an .iconset folder, the input of
// macOS's iconutil: every size the system asks for, at 1x and 2x.
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s <artwork.svg> <folder.iconset>\n", argv[0]);
        return 2;
    }
    // No application object: the artwork is shapes only, and without one the
    // tool needs no display or platform plugin while the build runs.
    QSvgRenderer artwork(QString::fromLocal8Bit(argv[1]));
    const QDir folder(QString::fromLocal8Bit(argv[2]));
    if (!artwork.isValid() || !folder.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "cannot render %s into %s\n", argv[1], argv[2]);
        return 1;
    }
    for (const int points : {16, 32, 128, 256, 512}) {
        for (const int scale : {1, 2}) {
            const int pixels = points * scale;
            QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing);
            artwork.render(&painter, QRectF(0, 0, pixels, pixels));
            painter.end();
            const QString suffix = scale == 2 ? QStringLiteral("@2x") : QString();
            const QString name = QStringLiteral("icon_%1x%1%2.png").arg(points).arg(suffix);
            if (!image.save(folder.filePath(name))) {
                std::fprintf(stderr, "cannot write %s\n", qPrintable(folder.filePath(name)));
                return 1;
            }
        }
    }
    return 0;
}
