#pragma once

#include "core/instance/AppBuildInfo.h"
#include "core/update/UpdateCheckResult.h"
#include "core/update/UpdateLoader.h"

#include <QNetworkRequest>
#include <QString>

#include <functional>
#include <optional>
#include <variant>

// Compares the running application with the release manifest at its update
// address. Holds no mutable state: copies may check at the same time.
struct UpdateChecker
{
    AppBuildInfo current;
    QString systemVersion;
    UpdateLoader load;

    // The running system's version and the network loader unless given.
    static UpdateChecker make(AppBuildInfo current, std::optional<QString> systemVersion = std::nullopt,
                              UpdateLoader load = {});

    // Never fails and never blocks: `done` is called once, later, on the thread
    // of `context`, unless `context` is deleted first, which abandons the check.
    void check(QObject *context, std::function<void(const UpdateCheckResult &)> done) const;

    // What can be decided without the network, or else the request to make.
    static std::variant<UpdateCheckResult, QNetworkRequest> prepare(const AppBuildInfo &current,
                                                                    const QString &systemVersion);
    // The verdict on what the loader brought back.
    static UpdateCheckResult evaluate(const LoadOutcome &loaded, const AppBuildInfo &current,
                                      const QString &systemVersion);

    static constexpr auto bundleIdentifier = QLatin1StringView("app.tolvar");
};
