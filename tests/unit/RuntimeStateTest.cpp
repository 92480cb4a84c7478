#include "core/sources/RuntimeState.h"

#include <gtest/gtest.h>

#include <ostream>

void PrintTo(const RuntimeState &state, std::ostream *out)
{
    *out << state.raw().toStdString();
}

namespace {

// The words of the JSON status.
TEST(RuntimeStateTest, RawValues)
{
    for (const char *raw : {"setup", "paused", "keeping", "switching", "waiting", "secure_input", "keymap_held",
                            "missing_source", "error", "stopped"})
        EXPECT_EQ(RuntimeState::fromRaw(QLatin1String(raw)).value_or(RuntimeState::Error).raw(), raw);
}

const QString us = "xkb:us::eng";
const QString name = "English (US)";
const QString warning = "could not switch";

// The first matching rule wins. Rows name only what differs from: keeping off, nothing pinned, no warnings.
TEST(RuntimeStateTest, Derives)
{
    using S = RuntimeState;
    // clang-format off
    const std::pair<RuntimeInputs, RuntimeState> rows[] = {
        {{.enabled = true, .pinnedID = us, .pinnedName = name, .currentID = us}, S::Keeping},
        {{.enabled = true, .pinnedID = us, .pinnedName = name, .currentID = {}}, S::Waiting},
        {{.configError = true, .switching = true}, S::Error},
        {{}, S::Paused},
        {{.automaticWarning = warning, .pinnedID = us, .pinnedName = name}, S::Paused},
        {{.enabled = true}, S::Setup},
        {{.enabled = true, .pinnedID = QString(), .pinnedName = name}, S::Setup},
        {{.enabled = true, .pinnedID = us, .secureInput = true}, S::MissingSource},
        {{.enabled = true, .switching = true, .pinnedID = us, .pinnedName = name, .secureInput = true}, S::SecureInput},
        {{.enabled = true, .pinnedID = us, .pinnedName = name, .secureInput = true, .currentID = us}, S::SecureInput},
        {{.enabled = true, .switching = true, .pinnedID = us, .pinnedName = name, .keymapHeld = true, .currentID = us},
         S::KeymapHeld},
        {{.pinnedID = us, .pinnedName = name, .keymapHeld = true}, S::Paused},
        {{.switching = true, .pinnedID = us, .pinnedName = name}, S::Switching},
        {{.automaticSwitching = true, .pinnedID = us, .pinnedName = name}, S::Paused},
        {{.enabled = true, .automaticSwitching = true, .pinnedID = us, .pinnedName = name, .currentID = us},
         S::Switching},
        {{.switching = true, .manualWarning = warning, .pinnedID = us, .pinnedName = name}, S::Switching},
        {{.manualWarning = warning, .pinnedID = us, .pinnedName = name}, S::Error},
        {{.enabled = true, .automaticWarning = warning, .pinnedID = us, .pinnedName = name, .currentID = us}, S::Error},
        {{.enabled = true, .pinnedID = us, .pinnedName = QString(), .currentID = us}, S::Keeping},
        {{.enabled = true, .pinnedID = us, .pinnedName = name, .currentID = us.toUpper()}, S::Waiting},
        {{.running = false, .configError = true, .enabled = true, .pinnedID = us, .pinnedName = name}, S::Stopped},
        {{.enabled = true, .pinnedID = us, .availability = InputSources::Availability::notRunning}, S::Error},
        {{.enabled = true, .availability = InputSources::Availability::notAnswering}, S::Setup},
        {{.pinnedID = us, .availability = InputSources::Availability::extensionMissing}, S::Paused}};
    // clang-format on
    for (size_t row = 0; row < std::size(rows); ++row)
        EXPECT_EQ(RuntimeState::derive(rows[row].first), rows[row].second) << "row " << row;
}

} // namespace
