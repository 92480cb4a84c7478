#pragma once

#include <QString>

// Why an update check could not be completed or its answer was not trusted.
struct UpdateCheckFailure
{
    enum class Kind {
        Http,
        InvalidSource,
        InvalidCurrentVersion,
        Network,
        InvalidResponse,
        InvalidManifest,
        WrongApplication,
        InsecureRedirect,
        ResponseTooLarge,
    };

    Kind kind = Kind::Network;
    // The HTTP status, for Http only.
    int status = 0;

    static UpdateCheckFailure http(int status) { return {Kind::Http, status}; }
    static UpdateCheckFailure of(Kind kind) { return {kind, 0}; }

    // The localised text shown for it; several kinds share one message.
    QString message() const;

    bool operator==(const UpdateCheckFailure &) const = default;
};
