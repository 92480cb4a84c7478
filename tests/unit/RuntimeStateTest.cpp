#include "core/sources/RuntimeState.h"

#include "support/ParamName.h"

#include <gtest/gtest.h>

#include <ostream>

void PrintTo(const RuntimeState &state, std::ostream *out)
{
    *out << state.raw().toStdString();
}

namespace {

TEST(RuntimeStateTest, RawValuesDecodeExactly)
{
    for (const char *raw :
         {"setup", "paused", "keeping", "switching", "waiting", "secure_input", "missing_source", "error", "stopped"})
        EXPECT_EQ(RuntimeState::fromRaw(QLatin1String(raw)).value_or(RuntimeState::Error).raw(), raw);
    for (const char *raw : {"secureInput", "Keeping", " paused", "", "missing-source"})
        EXPECT_EQ(RuntimeState::fromRaw(QLatin1String(raw)), std::nullopt) << raw;
    // Only the states that pass by themselves pulse.
    for (const RuntimeState state : {RuntimeState::Switching, RuntimeState::Waiting, RuntimeState::Keeping})
        EXPECT_EQ(state.isTransient(), state != RuntimeState::Keeping) << state;
}

struct DeriveCase
{
    const char *name;
    RuntimeInputs inputs;
    RuntimeState expected;
};

using RuntimeStateDeriveTest = testing::TestWithParam<DeriveCase>;

TEST_P(RuntimeStateDeriveTest, FirstMatchingRuleWins)
{
    EXPECT_EQ(RuntimeState::derive(GetParam().inputs), GetParam().expected);
}

const QString us = QStringLiteral("xkb:us::eng");
const QString name = QStringLiteral("English (US)");
const QString warning = QStringLiteral("could not switch");

// Rows name only what differs from: keeping off, nothing pinned, no warnings.
// clang-format off
INSTANTIATE_TEST_SUITE_P(RuntimeState, RuntimeStateDeriveTest, testing::Values(
    DeriveCase{"PinnedIsCurrent", {.enabled = true, .pinnedID = us, .pinnedName = name, .currentID = us}, RuntimeState::Keeping},
    DeriveCase{"AnotherIsCurrent", {.enabled = true, .pinnedID = us, .pinnedName = name, .currentID = {}}, RuntimeState::Waiting},
    DeriveCase{"ConfigErrorBeatsEverything", {.configError = true, .switching = true}, RuntimeState::Error},
    DeriveCase{"DisabledNothingPinned", {}, RuntimeState::Paused},
    DeriveCase{"DisabledWithMissingSource", {.pinnedID = us}, RuntimeState::Paused},
    DeriveCase{"EnabledNothingPinned", {.enabled = true}, RuntimeState::Setup},
    DeriveCase{"EnabledEmptyPin", {.enabled = true, .pinnedID = QString(), .pinnedName = name}, RuntimeState::Setup},
    DeriveCase{"MissingSourceBeatsSecureInput", {.enabled = true, .pinnedID = us, .secureInput = true}, RuntimeState::MissingSource},
    DeriveCase{"SecureInputBeatsSwitching",
               {.enabled = true, .switching = true, .pinnedID = us, .pinnedName = name, .secureInput = true}, RuntimeState::SecureInput},
    DeriveCase{"SecureInputWhilePinnedIsCurrent",
               {.enabled = true, .pinnedID = us, .pinnedName = name, .secureInput = true, .currentID = us}, RuntimeState::SecureInput},
    DeriveCase{"DisabledManualSwitch", {.switching = true, .pinnedID = us, .pinnedName = name}, RuntimeState::Switching},
    DeriveCase{"DisabledAutomaticSwitchIsIgnored", {.automaticSwitching = true, .pinnedID = us, .pinnedName = name}, RuntimeState::Paused},
    DeriveCase{"EnabledAutomaticSwitch",
               {.enabled = true, .automaticSwitching = true, .pinnedID = us, .pinnedName = name, .currentID = us}, RuntimeState::Switching},
    DeriveCase{"SwitchingBeatsWarning",
               {.switching = true, .manualWarning = warning, .pinnedID = us, .pinnedName = name}, RuntimeState::Switching},
    DeriveCase{"DisabledManualWarning", {.manualWarning = warning, .pinnedID = us, .pinnedName = name}, RuntimeState::Error},
    DeriveCase{"DisabledManualWarningNothingPinned", {.manualWarning = warning}, RuntimeState::Setup},
    DeriveCase{"DisabledLeftoverAutomaticWarning", {.automaticWarning = warning, .pinnedID = us, .pinnedName = name}, RuntimeState::Paused},
    DeriveCase{"EnabledAutomaticWarning",
               {.enabled = true, .automaticWarning = warning, .pinnedID = us, .pinnedName = name, .currentID = us}, RuntimeState::Error},
    DeriveCase{"EmptyPinnedNameIsStillPresent",
               {.enabled = true, .pinnedID = us, .pinnedName = QString(), .currentID = us}, RuntimeState::Keeping},
    DeriveCase{"IdentifiersCompareExactly",
               {.enabled = true, .pinnedID = us, .pinnedName = name, .currentID = us.toUpper()}, RuntimeState::Waiting}),
    ParamName());
// clang-format on

} // namespace
