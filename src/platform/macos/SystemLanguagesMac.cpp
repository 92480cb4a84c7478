#include "platform/SystemLanguages.h"

#include <QLocale>

#include <CoreFoundation/CoreFoundation.h>

namespace SystemLanguages {

QStringList preferred()
{
    // The global list only: a per-application language set in System Settings
    // must not change Tolvar's own choice.
    QStringList languages;
    CFPropertyListRef value = CFPreferencesCopyValue(CFSTR("AppleLanguages"), kCFPreferencesAnyApplication,
                                                     kCFPreferencesCurrentUser, kCFPreferencesAnyHost);
    if (value && CFGetTypeID(value) == CFArrayGetTypeID()) {
        const auto array = static_cast<CFArrayRef>(value);
        for (CFIndex i = 0; i < CFArrayGetCount(array); ++i) {
            const void *item = CFArrayGetValueAtIndex(array, i);
            if (CFGetTypeID(item) != CFStringGetTypeID()) {
                languages.clear();
                break;
            }
            languages << QString::fromCFString(static_cast<CFStringRef>(item));
        }
    }
    if (value)
        CFRelease(value);
    return languages.isEmpty() ? QLocale::system().uiLanguages() : languages;
}

} // namespace SystemLanguages
