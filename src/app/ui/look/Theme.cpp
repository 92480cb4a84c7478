#include "app/ui/look/Theme.h"

#include <QApplication>
#include <QVariant>
#include <QWidget>

namespace {

const char *const preferencesProperty = "tolvarDisplayPreferences";

DisplayPreferences applicationPreferences;

QVariant encode(DisplayPreferences preferences)
{
    return QVariantList{preferences.increasedContrast, preferences.reduceTransparency, preferences.reduceMotion};
}

DisplayPreferences decode(const QVariant &value)
{
    const QVariantList flags = value.toList();
    if (flags.size() != 3)
        return applicationPreferences;
    return {flags.at(0).toBool(), flags.at(1).toBool(), flags.at(2).toBool()};
}

// The system colours of the tints, in light and dark appearance.
QColor tint(bool dark, QRgb light, QRgb darkVariant)
{
    return QColor::fromRgb(dark ? darkVariant : light);
}

} // namespace

Theme Theme::fromPalette(const QPalette &palette, DisplayPreferences preferences)
{
    Theme theme;
    theme.window = palette.color(QPalette::Window);
    theme.dark = theme.window.lightnessF() < 0.5;
    theme.preferences = preferences;
    theme.primary = palette.color(QPalette::WindowText);
    // Increased contrast lifts the quieter text towards the primary colour.
    const bool strong = preferences.increasedContrast;
    theme.secondary = withOpacity(theme.primary, strong ? 0.8 : (theme.dark ? 0.6 : 0.62));
    theme.tertiary = withOpacity(theme.primary, strong ? 0.6 : (theme.dark ? 0.4 : 0.42));
    theme.accent = palette.color(QPalette::Highlight);
    theme.green = tint(theme.dark, 0xff2ea043, 0xff3fb950);
    theme.blue = tint(theme.dark, 0xff1c71d8, 0xff62a0ea);
    theme.indigo = tint(theme.dark, 0xff5856d6, 0xff8e8cf0);
    theme.orange = tint(theme.dark, 0xffc64600, 0xffffa348);
    theme.controlBackground = palette.color(QPalette::Base);
    return theme;
}

Theme Theme::of(const QWidget *widget)
{
    DisplayPreferences preferences = applicationPreferences;
    for (const QWidget *w = widget; w; w = w->parentWidget()) {
        const QVariant value = w->property(preferencesProperty);
        if (value.isValid()) {
            preferences = decode(value);
            break;
        }
    }
    return fromPalette(widget ? widget->palette() : QApplication::palette(), preferences);
}

void Theme::setPreferences(QWidget *root, DisplayPreferences preferences)
{
    root->setProperty(preferencesProperty, encode(preferences));
    root->update();
}

void Theme::setApplicationPreferences(DisplayPreferences preferences)
{
    applicationPreferences = preferences;
}

QPalette Theme::standardPalette(bool dark)
{
    // Close to the Adwaita and Breeze defaults, so previews look like a desktop's.
    const QColor window = dark ? QColor(0x24, 0x24, 0x24) : QColor(0xfa, 0xfa, 0xfa);
    const QColor text = dark ? QColor(0xff, 0xff, 0xff) : QColor(0x1f, 0x1f, 0x1f);
    const QColor base = dark ? QColor(0x1e, 0x1e, 0x1e) : QColor(0xff, 0xff, 0xff);
    const QColor button = dark ? QColor(0x33, 0x33, 0x33) : QColor(0xf0, 0xf0, 0xf0);
    const QColor highlight = dark ? QColor(0x35, 0x84, 0xe4) : QColor(0x1c, 0x71, 0xd8);
    QPalette palette(button, window);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, withOpacity(text, 0.5));
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, withOpacity(text, 0.4));
    palette.setColor(QPalette::Disabled, QPalette::Text, withOpacity(text, 0.4));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, withOpacity(text, 0.4));
    return palette;
}

QColor Theme::primaryAt(qreal opacity) const
{
    return withOpacity(primary, opacity);
}

QColor Theme::withOpacity(QColor color, qreal opacity)
{
    color.setAlphaF(static_cast<float>(color.alphaF() * opacity));
    return color;
}

QColor Theme::surfaceFill() const
{
    if (preferences.reduceTransparency)
        return controlBackground;
    return primaryAt(dark ? Opacity::surfaceFillDark : Opacity::surfaceFillLight);
}

QColor Theme::surfaceBorder() const
{
    if (preferences.increasedContrast)
        return primaryAt(Opacity::surfaceBorderContrast);
    return primaryAt(dark ? Opacity::surfaceBorderDark : Opacity::surfaceBorderLight);
}

qreal Theme::selectedRowOpacity() const
{
    return preferences.increasedContrast ? Opacity::selectedRowContrast : Opacity::selectedRow;
}

QFont Theme::font(qreal points, QFont::Weight weight)
{
    QFont font = QApplication::font();
    // Qt's points are 1/72 inch at 96 logical dots per inch; the design's are pixels.
    font.setPointSizeF(points * 72.0 / 96.0);
    font.setWeight(weight);
    return font;
}
