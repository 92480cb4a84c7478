#pragma once

#include "core/update/UpdateLoader.h"

#include <QSslConfiguration>

#include <chrono>
#include <optional>

// The loader on QtNetwork: one fresh manager per request, with no cookies, no
// cache and no stored credentials; every redirect re-checked; fixed time limits
// and a hard cap on the body.
namespace NetworkLoader {

struct Options
{
    // No data for this long ends the request.
    std::chrono::milliseconds transferTimeout{12000};
    // The whole request, redirects and body included, ends after this long.
    std::chrono::milliseconds totalTimeout{15000};
    // The system's trust settings unless given.
    std::optional<QSslConfiguration> tls;
};

inline constexpr qsizetype largestBody = 65536;

UpdateLoader make(Options options = {});

} // namespace NetworkLoader
