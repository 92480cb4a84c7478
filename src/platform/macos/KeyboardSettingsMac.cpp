#include "platform/input/KeyboardSettings.h"

#include <QDesktopServices>
#include <QUrl>

KeyboardSettings KeyboardSettings::live()
{
    // The Keyboard pane of System Settings (macOS 13 and later).
    return {[] {
        return QDesktopServices::openUrl(
            QUrl(QStringLiteral("x-apple.systempreferences:com.apple.Keyboard-Settings.extension")));
    }};
}
