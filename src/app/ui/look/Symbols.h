#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>
#include <QStringList>

// The symbols the interface shows, by their design names ("gearshape",
// "chevron.left", ...), drawn from the icon set shipped in the resources.
namespace Symbols {

// Stroke weights of the outline symbols; filled symbols have one weight.
enum class Weight { light, regular, medium, semibold, bold };

QStringList names();

// The resource that draws a symbol; empty for an unknown name.
QString resource(const QString &name);

// The symbol in `color`, `points` square, at the device pixel ratio. An unknown
// name gives an empty pixmap of that size.
QPixmap pixmap(const QString &name, qreal points, const QColor &color, qreal devicePixelRatio,
               Weight weight = Weight::regular);

// The square a symbol takes beside text of a font size, in points.
qreal boxFor(qreal fontPoints);

} // namespace Symbols
