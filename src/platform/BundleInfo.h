#pragma once

#include <QString>
#include <QVariant>

// The application's information keys ("CFBundleShortVersionString",
// "CFBundleVersion", "LSMinimumSystemVersion", "TolvarUpdateURL"), with the
// types the platform stores them in: macOS reads the bundle's Info.plist, Linux
// a record written when the program was built.
namespace BundleInfo {

// An invalid QVariant when the key is missing.
QVariant value(const QString &key);

// The lowest system version a bundle that names none is taken to need.
QString defaultMinimumSystemVersion();

} // namespace BundleInfo
