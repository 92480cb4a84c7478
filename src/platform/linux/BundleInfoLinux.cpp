#include "platform/BundleInfo.h"

#include "BuildRecord.h"

namespace BundleInfo {

QVariant value(const QString &key)
{
    // A development tree has no build number, which is what keeps it out of update checks.
    const bool released = !QStringView(u"" TOLVAR_BUILD_NUMBER).isEmpty();
    if (key == u"CFBundleShortVersionString")
        return QStringLiteral(TOLVAR_VERSION);
    if (released && key == u"CFBundleVersion")
        return QStringLiteral(TOLVAR_BUILD_NUMBER);
    if (key == u"LSMinimumSystemVersion")
        return QStringLiteral(TOLVAR_MINIMUM_SYSTEM_VERSION);
    if (key == u"TolvarUpdateURL" && !QStringView(u"" TOLVAR_UPDATE_URL).isEmpty())
        return QStringLiteral(TOLVAR_UPDATE_URL);
    return {};
}

QString defaultMinimumSystemVersion()
{
    return QStringLiteral(TOLVAR_MINIMUM_SYSTEM_VERSION);
}

} // namespace BundleInfo
