#include "core/sources/SourceIcon.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QIcon>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>
#include <QUrl>

namespace SourceIcon {
namespace {

// Large enough for a crisp menu-bar icon on a dense screen, small enough to
// stay cheap for a drawing that reports no size of its own.
constexpr int preferredSide = 64;

std::optional<QImage> fromSvg(const QString &path)
{
    QSvgRenderer renderer(path);
    if (!renderer.isValid())
        return std::nullopt;
    QSize size = renderer.defaultSize();
    if (size.isEmpty())
        size = QSize(preferredSide, preferredSide);
    size.scale(QSize(preferredSide, preferredSide), Qt::KeepAspectRatio);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();
    return image;
}

bool isSvg(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == QLatin1String("svg") || suffix == QLatin1String("svgz");
}

} // namespace

std::optional<QImage> fromFile(const QVariant &url)
{
    if (url.metaType() != QMetaType::fromType<QUrl>())
        return std::nullopt;
    const QUrl fileURL = url.toUrl();
    if (!fileURL.isLocalFile())
        return std::nullopt;
    const QString path = fileURL.toLocalFile();
    if (isSvg(path))
        return fromSvg(path);
    QImageReader reader(path);
    QImage image = reader.read();
    if (image.isNull())
        return std::nullopt;
    return image;
}

std::optional<QImage> fromReference(const QVariant &reference)
{
    if (reference.metaType() == QMetaType::fromType<QImage>()) {
        QImage image = reference.value<QImage>();
        return image.isNull() ? std::nullopt : std::optional<QImage>(image);
    }
    if (reference.metaType() != QMetaType::fromType<QString>() || reference.toString().isEmpty())
        return std::nullopt;
    // Icon themes are read through the GUI's platform; a command line has none.
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return std::nullopt;
    const QIcon icon = QIcon::fromTheme(reference.toString());
    if (icon.isNull())
        return std::nullopt;
    QImage image = icon.pixmap(QSize(preferredSide, preferredSide)).toImage();
    return image.isNull() ? std::nullopt : std::optional<QImage>(image);
}

} // namespace SourceIcon
