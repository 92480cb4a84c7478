#pragma once

#include "platform/input/InputSources.h"

#include <QString>

#include <optional>

// Everything the runtime state is derived from, as the application model or
// the command line observes it.
struct RuntimeInputs
{
    bool running = true;             // a windowed instance keeps the pin
    bool configError = false;        // the configuration could not be loaded
    bool enabled = false;            // keeping is switched on
    bool switching = false;          // a manual switch is running
    bool automaticSwitching = false; // an automatic switch is running
    std::optional<QString> manualWarning = {};
    std::optional<QString> automaticWarning = {};
    std::optional<QString> pinnedID = {};
    // The name of the pinned source among the selectable ones; absent when it is not there.
    std::optional<QString> pinnedName = {};
    bool secureInput = false;
    bool keymapHeld = false; // someone else holds the keyboard layout
    QString currentID = {};
    // Whether the sources can be reached at all: when not, none of them is missing.
    InputSources::Availability availability = InputSources::Availability::available;
};
