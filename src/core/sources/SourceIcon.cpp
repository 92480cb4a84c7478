#include "core/sources/SourceIcon.h"

#include "core/sources/Source.h"

#include <QFileInfo>
#include <QFont>
#include <QFontMetricsF>
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

bool hasGuiPlatform()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance()) != nullptr;
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
    if (!hasGuiPlatform())
        return std::nullopt;
    const QIcon icon = QIcon::fromTheme(reference.toString());
    if (icon.isNull())
        return std::nullopt;
    QImage image = icon.pixmap(QSize(preferredSide, preferredSide)).toImage();
    return image.isNull() ? std::nullopt : std::optional<QImage>(image);
}

std::optional<QImage> fromSymbol(const QVariant &symbol)
{
    if (symbol.metaType() != QMetaType::fromType<QString>() || symbol.toString().trimmed().isEmpty())
        return std::nullopt;
    if (!hasGuiPlatform())
        return std::nullopt;
    const QString text = symbol.toString().trimmed();
    // The menu bar's box, 22 by 18, at four times its size for dense screens.
    const QSize canvas(88, 72);
    QFont font;
    font.setBold(true);
    font.setPixelSize(canvas.height() * 3 / 4);
    // Longer labels get a smaller type rather than spilling out of the box.
    const qreal width = QFontMetricsF(font).horizontalAdvance(text);
    if (width > canvas.width() * 0.95)
        font.setPixelSize(qMax(8, int(font.pixelSize() * canvas.width() * 0.95 / width)));
    QImage image(canvas, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(image.rect(), Qt::AlignCenter, text);
    painter.end();
    return image;
}

} // namespace SourceIcon

std::optional<QImage> Source::icon() const
{
    if (std::optional<QImage> image = SourceIcon::fromFile(m_properties.iconURL))
        return image;
    if (std::optional<QImage> image = SourceIcon::fromReference(m_properties.iconReference))
        return image;
    return SourceIcon::fromSymbol(m_properties.symbol);
}
