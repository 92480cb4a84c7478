#include "core/cli/Automation.h"
#include "support/FakeAutomationServices.h"
#include "support/ParamName.h"

#include <gtest/gtest.h>

namespace {

const QString us = "xkb:us::eng";
using FakeServices = FakeAutomationServices;

struct StatusCase
{
    const char *name;
    std::function<void(FakeServices &)> arrange;
    RuntimeState state;
    std::optional<AutomationTarget> target;
};

class AutomationStatusTest : public testing::TestWithParam<StatusCase>
{
};

TEST_P(AutomationStatusTest, DerivesTheState)
{
    FakeServices fake;
    fake.stored = Config{us, true, std::nullopt, true};
    GetParam().arrange(fake);
    const auto status = Automation(fake.services()).status();
    ASSERT_TRUE(status.ok()) << qPrintable(status.error().code);
    EXPECT_EQ(status->state.raw(), RuntimeState(GetParam().state).raw());
    EXPECT_EQ(status->target, GetParam().target);
    EXPECT_EQ(status->current, (AutomationSource{fake.current.id, fake.current.name}));
    EXPECT_EQ(status->backendError, fake.availability == InputSources::Availability::available
                                        ? std::nullopt
                                        : std::optional(AutomationFailure::gnomeExtensionMissing()));
}

const AutomationTarget usTarget{us, QString("English (US)"), true};
const AutomationTarget unreachableUs{us, std::nullopt, false};
const auto unreachable = [](FakeServices &f) {
    f.availability = InputSources::Availability::extensionMissing;
    f.choices.clear();
    f.current = {};
};

// clang-format off
INSTANTIATE_TEST_SUITE_P(Automation, AutomationStatusTest, testing::Values(
    StatusCase{"NoFileNoInstance", [](auto &f) { f.stored.reset(); f.running = false; }, RuntimeState::Stopped, {}},
    StatusCase{"NoFileButRunning", [](auto &f) { f.stored.reset(); }, RuntimeState::Paused, {}},
    StatusCase{"Keeping", [](auto &) {}, RuntimeState::Keeping, usTarget},
    StatusCase{"Waiting", [](auto &f) { f.current = {"hangul", "Korean"}; }, RuntimeState::Waiting, usTarget},
    StatusCase{"EmptyPinIsSetup", [](auto &f) { f.stored->sourceID = QString(); }, RuntimeState::Setup,
               AutomationTarget{QString(), std::nullopt, false}},
    StatusCase{"UninstalledBeatsSecureInput", [](auto &f) { f.stored->sourceID = "gone"; f.secure = true; },
               RuntimeState::MissingSource, AutomationTarget{"gone", std::nullopt, false}},
    StatusCase{"SecureInputWhateverIsCurrent", [](auto &f) { f.secure = true; }, RuntimeState::SecureInput, usTarget},
    StatusCase{"UnreachableSourcesAreAnErrorNotAMissingPin", unreachable, RuntimeState::Error, unreachableUs},
    StatusCase{"UnreachableSourcesDoNotMatterWhilePaused", [](auto &f) { unreachable(f); f.stored->enabled = false; },
               RuntimeState::Paused, unreachableUs}),
    ParamName());
// clang-format on

struct KeepingCase
{
    const char *name;
    std::optional<Config> stored;
    CLIRequest::Command command;
    std::optional<AutomationFailure> failure;
    bool enabledAfter;
    bool extensionRunning = true;
};

class AutomationKeepingTest : public testing::TestWithParam<KeepingCase>
{
};

TEST_P(AutomationKeepingTest, EditsOnlyEnabled)
{
    FakeServices fake;
    fake.stored = GetParam().stored;
    if (!GetParam().extensionRunning)
        fake.availability = InputSources::Availability::extensionMissing;
    const std::optional<Config> before = fake.stored;
    const auto status = Automation(fake.services()).setKeeping(GetParam().command);
    if (GetParam().failure) {
        ASSERT_FALSE(status.ok());
        EXPECT_EQ(status.error(), *GetParam().failure);
        EXPECT_EQ(fake.writes, 0) << "a refused edit writes nothing";
        return;
    }
    ASSERT_TRUE(status.ok()) << qPrintable(status.error().code);
    EXPECT_EQ(status->enabled, GetParam().enabledAfter);
    Config expected = before.value_or(Config{});
    expected.enabled = GetParam().enabledAfter;
    EXPECT_EQ(fake.stored, expected);
}

using C = CLIRequest::Command;
const Config pinnedOff{us, false, "ja", true};
const Config unpinnedOff{std::nullopt, false, std::nullopt, false};

// clang-format off
INSTANTIATE_TEST_SUITE_P(Automation, AutomationKeepingTest, testing::Values(
    KeepingCase{"PauseWithoutPin", unpinnedOff, C::Pause, std::nullopt, false},
    KeepingCase{"PauseWithoutFile", std::nullopt, C::Pause, std::nullopt, false},
    KeepingCase{"ResumeWithoutPin", unpinnedOff, C::Resume, AutomationFailure::noTarget(), false},
    KeepingCase{"ResumeWithGoneSource", Config{"gone", false, std::nullopt, true}, C::Resume,
                AutomationFailure::missingSource(), false},
    KeepingCase{"ResumeWithoutTheGnomeExtension", pinnedOff, C::Resume, AutomationFailure::gnomeExtensionMissing(),
                false, false},
    KeepingCase{"ToggleOffIgnoresThePin", Config{"gone", true, std::nullopt, true}, C::Toggle, std::nullopt, false},
    KeepingCase{"ToggleOn", pinnedOff, C::Toggle, std::nullopt, true},
    KeepingCase{"ToggleOnWithoutPin", unpinnedOff, C::Toggle, AutomationFailure::noTarget(), false}),
    ParamName());
// clang-format on

} // namespace
