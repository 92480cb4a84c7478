#include "platform/Notifications.h"
#include "platform/input/InputSources.h"

#include <QImage>
#include <QUrl>

#include <Carbon/Carbon.h>

// Text Input Sources, property by property, as the port's bags.
namespace {

QVariant stringProperty(TISInputSourceRef source, CFStringRef key)
{
    const auto value = static_cast<CFTypeRef>(TISGetInputSourceProperty(source, key));
    if (!value)
        return {};
    if (CFGetTypeID(value) != CFStringGetTypeID())
        return QVariant::fromValue(quintptr(value)); // present, but not text
    return QString::fromCFString(static_cast<CFStringRef>(value));
}

QVariant boolProperty(TISInputSourceRef source, CFStringRef key)
{
    const auto value = static_cast<CFTypeRef>(TISGetInputSourceProperty(source, key));
    if (!value)
        return {};
    if (CFGetTypeID(value) != CFBooleanGetTypeID())
        return QVariant::fromValue(quintptr(value));
    return bool(CFBooleanGetValue(static_cast<CFBooleanRef>(value)));
}

QVariant languagesProperty(TISInputSourceRef source)
{
    const auto value = static_cast<CFTypeRef>(TISGetInputSourceProperty(source, kTISPropertyInputSourceLanguages));
    if (!value)
        return {};
    if (CFGetTypeID(value) != CFArrayGetTypeID())
        return QVariant::fromValue(quintptr(value));
    QStringList languages;
    const auto array = static_cast<CFArrayRef>(value);
    for (CFIndex i = 0; i < CFArrayGetCount(array); ++i) {
        const void *item = CFArrayGetValueAtIndex(array, i);
        if (CFGetTypeID(item) != CFStringGetTypeID())
            return QVariant::fromValue(quintptr(value));
        languages << QString::fromCFString(static_cast<CFStringRef>(item));
    }
    return languages;
}

QVariant iconURLProperty(TISInputSourceRef source)
{
    const auto value = static_cast<CFTypeRef>(TISGetInputSourceProperty(source, kTISPropertyIconImageURL));
    if (!value)
        return {};
    if (CFGetTypeID(value) != CFURLGetTypeID())
        return QVariant::fromValue(quintptr(value));
    return QUrl::fromCFURL(static_cast<CFURLRef>(value));
}

// Drawn straight from the icon reference with Quartz: NSImage's initialiser for
// icon references is deprecated, the plotting call is not.
QVariant iconReferenceProperty(TISInputSourceRef source)
{
    const auto reference = static_cast<IconRef>(TISGetInputSourceProperty(source, kTISPropertyIconRef));
    if (!reference)
        return {};
    constexpr int side = 64; // 32 points at twice the density
    QImage drawn(side, side, QImage::Format_ARGB32_Premultiplied);
    drawn.fill(Qt::transparent);
    CGColorSpaceRef space = CGColorSpaceCreateDeviceRGB();
    CGContextRef context = CGBitmapContextCreate(drawn.bits(), side, side, 8, size_t(drawn.bytesPerLine()), space,
                                                 kCGImageAlphaPremultipliedFirst | kCGBitmapByteOrder32Host);
    CGColorSpaceRelease(space);
    if (!context)
        return {};
    const CGRect rect = CGRectMake(0, 0, side, side);
    const OSStatus status =
        PlotIconRefInContext(context, &rect, kAlignNone, kTransformNone, nullptr, kPlotIconRefNormalFlags, reference);
    CGContextRelease(context);
    if (status != noErr)
        return {};
    drawn.setDevicePixelRatio(2);
    return drawn;
}

SourceProperties propertiesOf(TISInputSourceRef source)
{
    SourceProperties properties;
    properties.id = stringProperty(source, kTISPropertyInputSourceID);
    properties.localizedName = stringProperty(source, kTISPropertyLocalizedName);
    properties.enabled = boolProperty(source, kTISPropertyInputSourceIsEnabled);
    properties.selectCapable = boolProperty(source, kTISPropertyInputSourceIsSelectCapable);
    QVariant category = stringProperty(source, kTISPropertyInputSourceCategory);
    if (category.toString() == QString::fromCFString(kTISCategoryKeyboardInputSource))
        category = SourceProperties::keyboardCategory;
    properties.category = category;
    properties.languages = languagesProperty(source);
    properties.iconURL = iconURLProperty(source);
    properties.iconReference = iconReferenceProperty(source);
    return properties;
}

QList<SourceProperties> list(CFDictionaryRef filter)
{
    QList<SourceProperties> result;
    CFArrayRef sources = TISCreateInputSourceList(filter, false);
    if (!sources)
        return result;
    if (CFGetTypeID(sources) == CFArrayGetTypeID()) {
        for (CFIndex i = 0; i < CFArrayGetCount(sources); ++i)
            result << propertiesOf(
                static_cast<TISInputSourceRef>(const_cast<void *>(CFArrayGetValueAtIndex(sources, i))));
    }
    CFRelease(sources);
    return result;
}

QList<SourceProperties> sourcesWithID(const QString &id)
{
    CFStringRef value = id.toCFString();
    const void *keys[] = {kTISPropertyInputSourceID};
    const void *values[] = {value};
    CFDictionaryRef filter =
        CFDictionaryCreate(nullptr, keys, values, 1, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks);
    QList<SourceProperties> result = list(filter);
    CFRelease(filter);
    CFRelease(value);
    return result;
}

QString currentSourceID()
{
    TISInputSourceRef source = TISCopyCurrentKeyboardInputSource();
    if (!source)
        return {};
    const QVariant id = stringProperty(source, kTISPropertyInputSourceID);
    CFRelease(source);
    return id.typeId() == QMetaType::QString ? id.toString() : QString();
}

qint32 selectSource(const QString &id)
{
    CFStringRef value = id.toCFString();
    const void *keys[] = {kTISPropertyInputSourceID};
    const void *values[] = {value};
    CFDictionaryRef filter =
        CFDictionaryCreate(nullptr, keys, values, 1, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks);
    CFArrayRef sources = TISCreateInputSourceList(filter, false);
    CFRelease(filter);
    CFRelease(value);
    qint32 status = paramErr;
    if (sources && CFArrayGetCount(sources) > 0)
        status = TISSelectInputSource(
            static_cast<TISInputSourceRef>(const_cast<void *>(CFArrayGetValueAtIndex(sources, 0))));
    if (sources)
        CFRelease(sources);
    return status;
}

InputSources::Observe observing(CFStringRef name)
{
    const QString notification = QString::fromCFString(name);
    return [notification](QObject *context, std::function<void()> callback) {
        return Notifications::live().observe(notification, context, std::move(callback));
    };
}

} // namespace

InputSources InputSources::live()
{
    return {[] { return list(nullptr); }, sourcesWithID, currentSourceID, selectSource,
            [] { return IsSecureEventInputEnabled() != 0; }, observing(kTISNotifySelectedKeyboardInputSourceChanged),
            observing(kTISNotifyEnabledKeyboardInputSourcesChanged), QStringLiteral("macos"),
            // Text Input Sources applies a CJKV source only when focus moves.
            true};
}
