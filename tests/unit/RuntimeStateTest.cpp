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
    for (const char *raw :
         {"setup", "paused", "keeping", "switching", "waiting", "secure_input", "missing_source", "error", "stopped"})
        EXPECT_EQ(RuntimeState::fromRaw(QLatin1String(raw)).value_or(RuntimeState::Error).raw(), raw);
}

const QString us = "xkb:us::eng";
const QString name = "English (US)";
const QString warning = "could not switch";

// The first matching rule wins. Rows name only what differs from: keeping off, nothing pinned, no warnings.
TEST(RuntimeStateTest, Derives)
{
    // clang-format off
    const std::pair<RuntimeInputs, RuntimeState> rows[] = {
        {{.enabled = true, .pinnedID = us, .pinnedName = name, .currentID = us}, RuntimeState::Keeping},
        {{.enabled = true, .pinnedID = us, .pinnedName = name, .currentID = {}}, RuntimeState::Waiting},
        {{.configError = true, .switching = true}, RuntimeState::Error},
        {{}, RuntimeState::Paused},
        {{.pinnedID = us}, RuntimeState::Paused},
        {{.enabled = true}, RuntimeState::Setup},
        {{.enabled = true, .pinnedID = QString(), .pinnedName = name}, RuntimeState::Setup},
        {{.enabled = true, .pinnedID = us, .secureInput = true}, RuntimeState::MissingSource},
        {{.enabled = true, .switching = true, .pinnedID = us, .pinnedName = name, .secureInput = true}, RuntimeState::SecureInput},
        {{.enabled = true, .pinnedID = us, .pinnedName = name, .secureInput = true, .currentID = us}, RuntimeState::SecureInput},
        {{.switching = true, .pinnedID = us, .pinnedName = name}, RuntimeState::Switching},
        {{.automaticSwitching = true, .pinnedID = us, .pinnedName = name}, RuntimeState::Paused},
        {{.enabled = true, .automaticSwitching = true, .pinnedID = us, .pinnedName = name, .currentID = us}, RuntimeState::Switching},
        {{.switching = true, .manualWarning = warning, .pinnedID = us, .pinnedName = name}, RuntimeState::Switching},
        {{.manualWarning = warning, .pinnedID = us, .pinnedName = name}, RuntimeState::Error},
        {{.manualWarning = warning}, RuntimeState::Setup},
        {{.automaticWarning = warning, .pinnedID = us, .pinnedName = name}, RuntimeState::Paused},
        {{.enabled = true, .automaticWarning = warning, .pinnedID = us, .pinnedName = name, .currentID = us}, RuntimeState::Error},
        {{.enabled = true, .pinnedID = us, .pinnedName = QString(), .currentID = us}, RuntimeState::Keeping},
        {{.enabled = true, .pinnedID = us, .pinnedName = name, .currentID = us.toUpper()}, RuntimeState::Waiting}};
    // clang-format on
    for (size_t row = 0; row < std::size(rows); ++row)
        EXPECT_EQ(RuntimeState::derive(rows[row].first), rows[row].second) << "row " << row;
}

} // namespace
