#pragma once

#include "core/update/UpdateCheckResult.h"

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
