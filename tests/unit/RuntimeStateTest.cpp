#include "core/sources/RuntimeState.h"
#include "core/sources/SwitchOutcome.h"

#include "support/ParamName.h"

#include <gtest/gtest.h>

#include <ostream>

void PrintTo(const RuntimeState &state, std::ostream *out)
{
    *out << state.raw().toStdString();
}

namespace {

struct RawCase
{
    const char *name;
    RuntimeState state;
    const char *raw;
    bool neutral;
    bool transient;
};

class RuntimeStateRawTest : public testing::TestWithParam<RawCase>
{
};

TEST_P(RuntimeStateRawTest, RawValueAndPredicates)
{
    const RawCase &row = GetParam();
    EXPECT_EQ(row.state.raw(), QLatin1String(row.raw));
    EXPECT_EQ(RuntimeState::fromRaw(QLatin1String(row.raw)), std::optional<RuntimeState>(row.state));
    EXPECT_EQ(row.state.isNeutral(), row.neutral);
    EXPECT_EQ(row.state.isTransient(), row.transient);
}

INSTANTIATE_TEST_SUITE_P(
    RuntimeState, RuntimeStateRawTest,
    testing::Values(RawCase{"Setup", RuntimeState::Setup, "setup", false, false},
                    RawCase{"Paused", RuntimeState::Paused, "paused", true, false},
                    RawCase{"Keeping", RuntimeState::Keeping, "keeping", false, false},
                    RawCase{"Switching", RuntimeState::Switching, "switching", false, true},
                    RawCase{"Waiting", RuntimeState::Waiting, "waiting", false, true},
                    RawCase{"SecureInput", RuntimeState::SecureInput, "secure_input", false, false},
                    RawCase{"MissingSource", RuntimeState::MissingSource, "missing_source", false, false},
                    RawCase{"Error", RuntimeState::Error, "error", false, false},
                    RawCase{"Stopped", RuntimeState::Stopped, "stopped", true, false}),
    ParamName());

TEST(RuntimeStateTest, OnlyExactRawValuesDecode)
{
    for (const char *raw : {"secureInput", "Keeping", " paused", "", "missing-source"})
        EXPECT_EQ(RuntimeState::fromRaw(QLatin1String(raw)), std::nullopt) << raw;
}

struct DeriveCase
{
    const char *name;
    RuntimeInputs inputs;
    RuntimeState expected;
};

class RuntimeStateDeriveTest : public testing::TestWithParam<DeriveCase>
{
};

TEST_P(RuntimeStateDeriveTest, FirstMatchingRuleWins)
{
    EXPECT_EQ(RuntimeState::derive(GetParam().inputs), GetParam().expected);
}

const QString us = QStringLiteral("xkb:us::eng");
const QString name = QStringLiteral("English (US)");
const QString warning = QStringLiteral("could not switch");

// Rows name only what differs from: keeping off, nothing pinned, no warnings.
INSTANTIATE_TEST_SUITE_P(
    RuntimeState, RuntimeStateDeriveTest,
    testing::Values(
        DeriveCase{"PinnedIsCurrent",
                   {.enabled = true, .pinnedID = us, .pinnedName = name, .currentID = us},
                   RuntimeState::Keeping},
        DeriveCase{"AnotherIsCurrent",
                   {.enabled = true, .pinnedID = us, .pinnedName = name, .currentID = {}},
                   RuntimeState::Waiting},
        DeriveCase{"ConfigErrorBeatsEverything", {.configError = true, .switching = true}, RuntimeState::Error},
        DeriveCase{"DisabledNothingPinned", {}, RuntimeState::Paused},
        DeriveCase{"DisabledWithMissingSource", {.pinnedID = us}, RuntimeState::Paused},
        DeriveCase{"EnabledNothingPinned", {.enabled = true}, RuntimeState::Setup},
        DeriveCase{
            "EnabledEmptyPin", {.enabled = true, .pinnedID = QString(), .pinnedName = name}, RuntimeState::Setup},
        DeriveCase{"MissingSourceBeatsSecureInput",
                   {.enabled = true, .pinnedID = us, .secureInput = true},
                   RuntimeState::MissingSource},
        DeriveCase{"SecureInputBeatsSwitching",
                   {.enabled = true, .switching = true, .pinnedID = us, .pinnedName = name, .secureInput = true},
                   RuntimeState::SecureInput},
        DeriveCase{"SecureInputWhilePinnedIsCurrent",
                   {.enabled = true, .pinnedID = us, .pinnedName = name, .secureInput = true, .currentID = us},
                   RuntimeState::SecureInput},
        DeriveCase{
            "DisabledManualSwitch", {.switching = true, .pinnedID = us, .pinnedName = name}, RuntimeState::Switching},
        DeriveCase{"DisabledAutomaticSwitchIsIgnored",
                   {.automaticSwitching = true, .pinnedID = us, .pinnedName = name},
                   RuntimeState::Paused},
        DeriveCase{"EnabledAutomaticSwitch",
                   {.enabled = true, .automaticSwitching = true, .pinnedID = us, .pinnedName = name, .currentID = us},
                   RuntimeState::Switching},
        DeriveCase{"SwitchingBeatsWarning",
                   {.switching = true, .manualWarning = warning, .pinnedID = us, .pinnedName = name},
                   RuntimeState::Switching},
        DeriveCase{"DisabledManualWarning",
                   {.manualWarning = warning, .pinnedID = us, .pinnedName = name},
                   RuntimeState::Error},
        DeriveCase{"DisabledManualWarningNothingPinned", {.manualWarning = warning}, RuntimeState::Setup},
        DeriveCase{"DisabledLeftoverAutomaticWarning",
                   {.automaticWarning = warning, .pinnedID = us, .pinnedName = name},
                   RuntimeState::Paused},
        DeriveCase{"EnabledAutomaticWarning",
                   {.enabled = true, .automaticWarning = warning, .pinnedID = us, .pinnedName = name, .currentID = us},
                   RuntimeState::Error},
        DeriveCase{"EmptyPinnedNameIsStillPresent",
                   {.enabled = true, .pinnedID = us, .pinnedName = QString(), .currentID = us},
                   RuntimeState::Keeping},
        DeriveCase{"IdentifiersCompareExactly",
                   {.enabled = true, .pinnedID = us, .pinnedName = name, .currentID = us.toUpper()},
                   RuntimeState::Waiting}),
    ParamName());

TEST(SwitchOutcomeTest, FailuresDifferByMessage)
{
    EXPECT_EQ(SwitchOutcome::failed(warning), SwitchOutcome::failed(warning));
    EXPECT_NE(SwitchOutcome::failed(warning), SwitchOutcome::failed(QStringLiteral("other")));
    EXPECT_NE(SwitchOutcome::failed(QString()), SwitchOutcome::success());
    EXPECT_NE(SwitchOutcome::missingSource(), SwitchOutcome::busy());
}

} // namespace
