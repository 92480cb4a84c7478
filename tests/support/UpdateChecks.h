#pragma once

#include "core/update/UpdateCheckResult.h"
#include "core/update/UpdateChecker.h"

#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <ostream>

// Readable update results in test failures.
inline void PrintTo(const UpdateCheckResult &result, std::ostream *out)
{
    *out << "kind " << static_cast<int>(result.kind);
    if (result.failure)
        *out << ", failure " << static_cast<int>(result.failure->kind) << " status " << result.failure->status;
    if (result.manifest)
        *out << ", manifest " << qPrintable(result.manifest->version) << " (" << result.manifest->build << ")"
             << (result.requiresNewerSystem ? ", needs newer system" : "");
}

// Runs a check to its end, or for ten seconds; a check answers from the event
// loop, even one that needs no network.
inline std::optional<UpdateCheckResult> runToEnd(const UpdateChecker &checker)
{
    QObject context;
    QEventLoop loop;
    std::optional<UpdateCheckResult> result;
    checker.check(&context, [&](const UpdateCheckResult &r) {
        result = r;
        loop.quit();
    });
    EXPECT_FALSE(result) << "answered before returning";
    QTimer::singleShot(std::chrono::seconds(10), &loop, &QEventLoop::quit);
    loop.exec();
    return result;
}
