#pragma once

#include <QString>

// What the update check and the About page say about the system Tolvar runs on.
namespace OperatingSystem {

// The running system's version as major.minor.patch, for example 26.0.1. On
// Linux this is the kernel's version, the numbers before any suffix.
QString version();

// The system's name ("macOS", "Linux") and the hardware this build is for.
QString name();
QString hardware();

// The suffix of the texts written for this platform: "linux", "macos".
QString textVariant();

} // namespace OperatingSystem
