#include "platform/BundleInfo.h"

#include <CoreFoundation/CoreFoundation.h>

namespace BundleInfo {

QVariant value(const QString &key)
{
    CFBundleRef bundle = CFBundleGetMainBundle();
    if (!bundle)
        return {};
    CFStringRef name = key.toCFString();
    // The per-key lookup also returns localised values, as the system reads them.
    CFTypeRef found = CFBundleGetValueForInfoDictionaryKey(bundle, name);
    CFRelease(name);
    if (!found)
        return {};
    if (CFGetTypeID(found) == CFStringGetTypeID())
        return QString::fromCFString(static_cast<CFStringRef>(found));
    // Present but not text: a value of another type, which readers treat as wrong.
    return QVariant::fromValue(true);
}

QString defaultMinimumSystemVersion()
{
    return QStringLiteral("26.0");
}

} // namespace BundleInfo
