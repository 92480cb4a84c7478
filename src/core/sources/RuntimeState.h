#pragma once

#include "core/sources/RuntimeInputs.h"

#include <QList>
#include <QString>

#include <optional>

// The one word that the panel, the icon and the command line show for the
// whole system. Its raw values cross process boundaries (JSON status) and
// must not change.
class RuntimeState
{
public:
    // In declaration order, which is also the order of allCases().
    enum Case { Setup, Paused, Keeping, Switching, Waiting, SecureInput, KeymapHeld, MissingSource, Error, Stopped };

    constexpr RuntimeState(Case value)
        : m_case(value)
    {}
    constexpr operator Case() const { return m_case; }

    static const QList<RuntimeState> &allCases();
    // None for anything but an exact raw value.
    static std::optional<RuntimeState> fromRaw(const QString &raw);
    QString raw() const;
    // The key of the state's words in the string tables ("state.active", ...).
    const char *textKey() const;

    // Nothing is being kept: paused or stopped.
    bool isNeutral() const;
    // Between two steady states: switching or waiting.
    bool isTransient() const;

    // The one state every view shows for these inputs.
    static RuntimeState derive(const RuntimeInputs &inputs);

private:
    Case m_case;
};
