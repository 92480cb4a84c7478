#pragma once

#include "base/Expected.h"
#include "core/cli/AutomationFailure.h"
#include "core/cli/AutomationServices.h"
#include "core/doctor/DoctorCheck.h"
#include "core/instance/AppBuildInfo.h"
#include "core/sources/SwitchOutcome.h"

#include <QString>

#include <functional>
#include <optional>

// Everything the command line reaches beyond the configuration, so tests can
// run every command against stand-ins.
struct CLIServices
{
    AutomationServices automation;
    // One manual switch with the engine in this process; absent if it never reported.
    std::function<std::optional<SwitchOutcome>()> switchOnce;
    // The login item; a failure carries its readable description.
    std::function<Expected<void, QString>(const QString &executable)> installLogin;
    std::function<Expected<void, QString>()> uninstallLogin;
    std::function<Expected<void, AutomationFailure>()> openApp;
    // The running program, for the login item to start.
    std::function<QString()> executablePath;
    std::function<QString()> configFile;
    // Turns on what the input-source backend needs from the desktop; false when that failed.
    std::function<bool()> enableCompanion = [] { return true; };
    std::function<AppBuildInfo()> buildInfo = [] { return AppBuildInfo{}; };
    // The machine's checks, in their fixed order.
    std::function<QList<DoctorCheck>()> doctor = [] { return QList<DoctorCheck>(); };

    // `started`: as for AutomationServices::live.
    static CLIServices live(std::optional<Expected<Config>> started = std::nullopt);
};
