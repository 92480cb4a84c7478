#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

class QWidget;

// The system's display preferences the components honour. Linux desktops do not
// publish them through Qt, so the window that hosts the components (or a preview)
// sets them; the defaults are the usual ones.
struct DisplayPreferences
{
    bool increasedContrast = false;
    bool reduceTransparency = false;
    bool reduceMotion = false;

    bool operator==(const DisplayPreferences &) const = default;
};

// The one look every component paints from: colours derived from the widget's
// palette, the named tints and the display preferences in force for it.
struct Theme
{
    bool dark = false;
    DisplayPreferences preferences;

    QColor primary;   // the palette's window text
    QColor secondary; // quieter text and symbols
    QColor tertiary;  // hints and empty-state symbols
    QColor accent;    // the palette's highlight
    QColor green;
    QColor blue;
    QColor indigo;
    QColor orange;
    QColor controlBackground; // solid fill where transparency is reduced
    QColor window;

    static Theme fromPalette(const QPalette &palette, DisplayPreferences preferences = {});
    // The theme of a widget: its palette and the preferences of its nearest
    // ancestor that has some, else the application's.
    static Theme of(const QWidget *widget);

    static void setPreferences(QWidget *root, DisplayPreferences preferences);
    static void setApplicationPreferences(DisplayPreferences preferences);

    // A palette in the system's usual light or dark colours, for previews and screenshots.
    static QPalette standardPalette(bool dark);

    QColor primaryAt(qreal opacity) const;
    static QColor withOpacity(QColor color, qreal opacity);

    QColor surfaceFill() const;
    QColor surfaceBorder() const;
    qreal selectedRowOpacity() const;

    // The system font at a size in points of the design, which are device-independent pixels.
    static QFont font(qreal points, QFont::Weight weight = QFont::Normal);
};

// Opacities of the primary or tint colour that the components share.
namespace Opacity {
inline constexpr qreal surfaceFillDark = 0.06;
inline constexpr qreal surfaceFillLight = 0.045;
inline constexpr qreal surfaceBorderDark = 0.16;
inline constexpr qreal surfaceBorderLight = 0.06;
inline constexpr qreal surfaceBorderContrast = 0.35;
inline constexpr qreal surfaceTintStart = 0.18;
inline constexpr qreal surfaceTintStartSolid = 0.14;
inline constexpr qreal surfaceTintEnd = 0.03;
inline constexpr qreal selectedRow = 0.12;
inline constexpr qreal selectedRowContrast = 0.22;
inline constexpr qreal quietFill = 0.06; // search field, current tag
inline constexpr qreal bannerFill = 0.11;
inline constexpr qreal bannerBorder = 0.18;
inline constexpr qreal divider = 0.12;
} // namespace Opacity
