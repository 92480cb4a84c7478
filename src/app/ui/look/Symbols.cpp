#include "app/ui/look/Symbols.h"

#include <QFile>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <array>
#include <cmath>
#include <utility>

namespace {

// Design names to files of the icon set (resources/icons).
constexpr std::array<std::pair<const char *, const char *>, 27> table{{
    {"gearshape", "settings"},
    {"chevron.left", "chevron-left"},
    {"chevron.right", "chevron-right"},
    {"chevron.down", "chevron-down"},
    {"arrow.up.forward", "arrow-up-right"},
    {"lock.shield", "shield-lock"},
    {"lock.shield.fill", "shield-lock-filled"},
    {"exclamationmark.triangle", "alert-triangle"},
    {"exclamationmark.triangle.fill", "alert-triangle-filled"},
    {"exclamationmark.circle", "alert-circle"},
    {"keyboard", "keyboard"},
    {"keyboard.badge.ellipsis", "keyboard-off"},
    {"pause.circle", "circle-pause"},
    {"stop.circle", "circle-stop"},
    {"pin", "pin"},
    {"pin.fill", "pin-filled"},
    {"arrow.triangle.2.circlepath", "refresh"},
    {"arrow.clockwise", "rotate-clockwise"},
    {"arrow.triangle.branch", "arrows-split-2"},
    {"clock", "clock"},
    {"magnifyingglass", "search"},
    {"xmark.circle.fill", "circle-x-filled"},
    {"checkmark", "check"},
    {"checkmark.circle", "circle-check"},
    {"arrow.down.circle", "circle-arrow-down"},
    {"power", "power"},
    {"menubar.rectangle", "layout-navbar"},
}};

const char *strokeWidth(Symbols::Weight weight)
{
    switch (weight) {
    case Symbols::Weight::light: return "1.25";
    case Symbols::Weight::regular: return "1.75";
    case Symbols::Weight::medium: return "2";
    case Symbols::Weight::semibold: return "2.25";
    case Symbols::Weight::bold: return "2.6";
    }
    return "2";
}

QByteArray svgBytes(const QString &path)
{
    static QHash<QString, QByteArray> cache;
    auto found = cache.constFind(path);
    if (found != cache.constEnd())
        return *found;
    QFile file(path);
    QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    cache.insert(path, bytes);
    return bytes;
}

} // namespace

namespace Symbols {

QStringList names()
{
    QStringList all;
    for (const auto &[name, file] : table)
        all << QLatin1String(name);
    return all;
}

QString resource(const QString &name)
{
    for (const auto &[symbol, file] : table) {
        if (name == QLatin1String(symbol))
            return QStringLiteral(":/icons/%1.svg").arg(QLatin1String(file));
    }
    return {};
}

QPixmap pixmap(const QString &name, qreal points, const QColor &color, qreal devicePixelRatio, Weight weight)
{
    const int side = qMax(1, qRound(points * devicePixelRatio));
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const QString path = resource(name);
    if (!path.isEmpty()) {
        QByteArray bytes = svgBytes(path);
        bytes.replace("stroke-width=\"2\"", QByteArray("stroke-width=\"") + strokeWidth(weight) + '"');
        QSvgRenderer renderer(bytes);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter);
        // The set draws in one colour; keep its shape and paint it in ours.
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), color);
    }
    QPixmap result = QPixmap::fromImage(image);
    result.setDevicePixelRatio(devicePixelRatio);
    return result;
}

qreal boxFor(qreal fontPoints)
{
    // The set's glyphs leave a tenth of their square empty on each side.
    return std::round(fontPoints * 1.3);
}

} // namespace Symbols
