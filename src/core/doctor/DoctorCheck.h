#pragma once

#include "core/l10n/LocalizedText.h"

#include <QJsonObject>
#include <QString>

// One finding of `tolvar doctor`: what was checked, how it stands, what was
// seen (data, never translated) and what the user can do about it.
struct DoctorCheck
{
    enum class Verdict { ok, info, warn, fail };

    // Stable, such as "input-stack"; its title is the text "doctor.title.<id>".
    QString id;
    Verdict verdict = Verdict::ok;
    QString evidence = {};
    // Empty when there is nothing to do.
    LocalizedText advice = {};

    // "ok", "info", "warn" or "fail".
    static QString verdictName(Verdict verdict);
    // The verdict and the check's title, in the active language: "Warning: Tray icon".
    QString heading() const;
    // Members "id", "verdict", "evidence" and "advice", the advice in the active language.
    QJsonObject toJson() const;

    bool operator==(const DoctorCheck &) const = default;
};
