#pragma once

#include "base/Expected.h"
#include "core/update/UpdateCheckFailure.h"

#include <QByteArray>
#include <QNetworkRequest>
#include <QObject>
#include <QUrl>

#include <functional>
#include <optional>

// What a loader hands back for one request.
struct LoadedResponse
{
    QByteArray body;
    // The address the answer finally came from, after any redirects.
    QUrl url;
    // Absent when the answer was not an HTTP response.
    std::optional<int> status;
};

using LoadOutcome = Expected<LoadedResponse, UpdateCheckFailure>;

// Fetches one request and calls `done` once, later, on the thread of `context`.
// Deleting `context` abandons the request: `done` is then never called. Transport
// errors of any kind (name resolution, TLS, time-outs) arrive as Network.
using UpdateLoader = std::function<void(const QNetworkRequest &request, QObject *context,
                                        std::function<void(const LoadOutcome &)> done)>;
