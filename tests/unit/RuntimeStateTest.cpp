#include "core/RuntimeState.h"
#include "core/SwitchOutcome.h"

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

TEST(RuntimeStateTest, AllCasesInDeclarationOrder)
{
    QStringList raws;
    for (const RuntimeState state : RuntimeState::allCases())
        raws << state.raw();
    EXPECT_EQ(raws.join(QLatin1Char(' ')),
              QStringLiteral("setup paused keeping switching waiting secure_input missing_source error stopped"));
}

struct UnknownCase
{
    const char *name;
    QString raw;
};

class RuntimeStateUnknownTest : public testing::TestWithParam<UnknownCase>
{
};

TEST_P(RuntimeStateUnknownTest, DecodesToNone)
{
    EXPECT_EQ(RuntimeState::fromRaw(GetParam().raw), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(RuntimeState, RuntimeStateUnknownTest,
                         testing::Values(UnknownCase{"CaseName", QStringLiteral("secureInput")},
                                         UnknownCase{"Capitalised", QStringLiteral("Keeping")},
                                         UnknownCase{"Padded", QStringLiteral(" paused")},
                                         UnknownCase{"Empty", QString()},
                                         UnknownCase{"Hyphenated", QStringLiteral("missing-source")}),
                         ParamName());

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
const QString german = QStringLiteral("xkb:de::deu");
const QString warning = QStringLiteral("could not switch");

// Keeping on, `us` pinned and current: the steady state that rows below vary.
RuntimeInputs keeping()
{
    RuntimeInputs inputs;
    inputs.enabled = true;
    inputs.pinnedID = us;
    inputs.pinnedName = QStringLiteral("English (US)");
    inputs.currentID = us;
    return inputs;
}

template <typename Edit> RuntimeInputs keepingWith(Edit edit)
{
    RuntimeInputs inputs = keeping();
    edit(inputs);
    return inputs;
}

INSTANTIATE_TEST_SUITE_P(
    RuntimeState, RuntimeStateDeriveTest,
    testing::Values(
        DeriveCase{"PinnedIsCurrent", keeping(), RuntimeState::Keeping},
        DeriveCase{"AnotherIsCurrent", keepingWith([](RuntimeInputs &i) { i.currentID = german; }),
                   RuntimeState::Waiting},
        DeriveCase{"NothingCurrent", keepingWith([](RuntimeInputs &i) { i.currentID.clear(); }), RuntimeState::Waiting},
        DeriveCase{"ConfigErrorBeatsEverything", keepingWith([](RuntimeInputs &i) {
                       i.configError = true;
                       i.enabled = false;
                       i.pinnedID.reset();
                   }),
                   RuntimeState::Error},
        DeriveCase{"DisabledNothingPinned", RuntimeInputs{}, RuntimeState::Paused},
        DeriveCase{"DisabledWithPinnedSource", keepingWith([](RuntimeInputs &i) { i.enabled = false; }),
                   RuntimeState::Paused},
        DeriveCase{"DisabledWithMissingSource", keepingWith([](RuntimeInputs &i) {
                       i.enabled = false;
                       i.pinnedName.reset();
                   }),
                   RuntimeState::Paused},
        DeriveCase{"EnabledNothingPinned", keepingWith([](RuntimeInputs &i) { i.pinnedID.reset(); }),
                   RuntimeState::Setup},
        DeriveCase{"EnabledEmptyPin", keepingWith([](RuntimeInputs &i) { i.pinnedID = QString(); }),
                   RuntimeState::Setup},
        DeriveCase{"MissingSourceBeatsSecureInput", keepingWith([](RuntimeInputs &i) {
                       i.pinnedName.reset();
                       i.secureInput = true;
                   }),
                   RuntimeState::MissingSource},
        DeriveCase{"SecureInputBeatsSwitching", keepingWith([](RuntimeInputs &i) {
                       i.secureInput = true;
                       i.switching = true;
                   }),
                   RuntimeState::SecureInput},
        DeriveCase{"SecureInputWhilePinnedIsCurrent", keepingWith([](RuntimeInputs &i) { i.secureInput = true; }),
                   RuntimeState::SecureInput},
        DeriveCase{"DisabledManualSwitch", keepingWith([](RuntimeInputs &i) {
                       i.enabled = false;
                       i.switching = true;
                   }),
                   RuntimeState::Switching},
        DeriveCase{"DisabledAutomaticSwitchIsIgnored", keepingWith([](RuntimeInputs &i) {
                       i.enabled = false;
                       i.automaticSwitching = true;
                       i.currentID = german;
                   }),
                   RuntimeState::Paused},
        DeriveCase{"EnabledAutomaticSwitch", keepingWith([](RuntimeInputs &i) { i.automaticSwitching = true; }),
                   RuntimeState::Switching},
        DeriveCase{"SwitchingBeatsWarning", keepingWith([](RuntimeInputs &i) {
                       i.switching = true;
                       i.manualWarning = warning;
                   }),
                   RuntimeState::Switching},
        DeriveCase{"DisabledManualWarning", keepingWith([](RuntimeInputs &i) {
                       i.enabled = false;
                       i.manualWarning = warning;
                   }),
                   RuntimeState::Error},
        DeriveCase{"DisabledLeftoverAutomaticWarning", keepingWith([](RuntimeInputs &i) {
                       i.enabled = false;
                       i.automaticWarning = warning;
                   }),
                   RuntimeState::Paused},
        DeriveCase{"EnabledAutomaticWarning", keepingWith([](RuntimeInputs &i) { i.automaticWarning = warning; }),
                   RuntimeState::Error},
        DeriveCase{"EmptyWarningStillCounts", keepingWith([](RuntimeInputs &i) { i.manualWarning = QString(); }),
                   RuntimeState::Error},
        DeriveCase{"DisabledManualWarningNothingPinned", keepingWith([](RuntimeInputs &i) {
                       i.enabled = false;
                       i.manualWarning = warning;
                       i.pinnedID.reset();
                   }),
                   RuntimeState::Setup},
        DeriveCase{"EmptyPinnedNameIsStillPresent", keepingWith([](RuntimeInputs &i) { i.pinnedName = QString(); }),
                   RuntimeState::Keeping},
        DeriveCase{"IdentifiersCompareExactly", keepingWith([](RuntimeInputs &i) { i.currentID = us.toUpper(); }),
                   RuntimeState::Waiting}),
    ParamName());

struct OutcomeCase
{
    const char *name;
    SwitchOutcome left;
    SwitchOutcome right;
    bool equal;
};

class SwitchOutcomeTest : public testing::TestWithParam<OutcomeCase>
{
};

TEST_P(SwitchOutcomeTest, Equality)
{
    EXPECT_EQ(GetParam().left == GetParam().right, GetParam().equal);
}

INSTANTIATE_TEST_SUITE_P(
    SwitchOutcome, SwitchOutcomeTest,
    testing::Values(OutcomeCase{"SameCase", SwitchOutcome::busy(), SwitchOutcome::busy(), true},
                    OutcomeCase{"DifferentCases", SwitchOutcome::success(), SwitchOutcome::secureInput(), false},
                    OutcomeCase{"MissingIsNotBusy", SwitchOutcome::missingSource(), SwitchOutcome::busy(), false},
                    OutcomeCase{"FailedSameMessage", SwitchOutcome::failed(warning), SwitchOutcome::failed(warning),
                                true},
                    OutcomeCase{"FailedOtherMessage", SwitchOutcome::failed(warning),
                                SwitchOutcome::failed(QStringLiteral("x")), false},
                    OutcomeCase{"FailedWithoutMessageIsNotSuccess", SwitchOutcome::failed(QString()),
                                SwitchOutcome::success(), false}),
    ParamName());

} // namespace
