#pragma once

#include "core/update/ReleaseManifest.h"
#include "core/update/UpdateCheckFailure.h"

#include <optional>

// The outcome of one update check.
struct UpdateCheckResult
{
    enum class Kind { Available, Failure, Unconfigured, UpToDate, LocalNewer };

    Kind kind = Kind::Unconfigured;
    // Available only: the newer release, and whether this system is too old for it.
    std::optional<ReleaseManifest> manifest;
    bool requiresNewerSystem = false;
    // Failure only.
    std::optional<UpdateCheckFailure> failure;

    static UpdateCheckResult available(ReleaseManifest manifest, bool requiresNewerSystem)
    {
        return {Kind::Available, std::move(manifest), requiresNewerSystem, std::nullopt};
    }
    static UpdateCheckResult failed(UpdateCheckFailure failure) { return {Kind::Failure, {}, false, failure}; }
    static UpdateCheckResult failed(UpdateCheckFailure::Kind kind) { return failed(UpdateCheckFailure::of(kind)); }
    static UpdateCheckResult of(Kind kind) { return {kind, {}, false, std::nullopt}; }

    bool operator==(const UpdateCheckResult &) const = default;
};
