#pragma once

#include "core/cli/AutomationFailure.h"
#include "core/cli/AutomationStatus.h"
#include "core/doctor/DoctorCheck.h"
#include "core/instance/AppBuildInfo.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

// The one JSON document a command prints with --json. Schema version 1:
// compact, keys in byte order, absent members left out, slashes plain.
struct AutomationResponse
{
    bool ok = true;
    QString command = {};
    std::optional<AutomationStatus> status = {};
    std::optional<QList<AutomationSource>> sources = {};
    std::optional<AutomationFailure> error = {};
    // As members "version" and "build", each only when known.
    std::optional<AppBuildInfo> build = {};
    std::optional<QList<DoctorCheck>> checks = {};

    static AutomationResponse success(const QString &command, const AutomationStatus &status);
    static AutomationResponse listing(const QString &command, const QList<AutomationSource> &sources);
    static AutomationResponse version(const QString &command, const AppBuildInfo &build);
    // Not ok when a check failed, with the failure beside the checks.
    static AutomationResponse doctor(const QString &command, const QList<DoctorCheck> &checks, bool failed);
    static AutomationResponse failure(const QString &command, const AutomationFailure &error);

    QByteArray encoded() const;
    // Printed in place of a document that could not be encoded.
    static QByteArray fallback();
};
