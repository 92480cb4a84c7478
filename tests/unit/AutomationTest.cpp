#include "core/cli/Automation.h"
#include "core/cli/AutomationResponse.h"
#include "support/FakeAutomationServices.h"

#include <gtest/gtest.h>

#include <variant>

namespace {

const QString us = "xkb:us::eng";
using FakeServices = FakeAutomationServices;

TEST(AutomationTest, StatusDerivesTheStateFromTheServices)
{
    const AutomationTarget usTarget{us, QString("English (US)"), true};
    const AutomationTarget unreachableUs{us, std::nullopt, false};
    const auto unreachable = [](FakeServices &f) {
        f.availability = InputSources::Availability::extensionOff;
        f.choices.clear();
        f.current = {};
    };
    // clang-format off
    const std::tuple<std::function<void(FakeServices &)>, RuntimeState, std::optional<AutomationTarget>> rows[] = {
        {[](auto &f) { f.stored.reset(); f.running = false; }, RuntimeState::Stopped, {}},
        {[](auto &f) { f.stored.reset(); }, RuntimeState::Paused, {}},
        {[](auto &) {}, RuntimeState::Keeping, usTarget},
        {[](auto &f) { f.stored->sourceID = QString(); }, RuntimeState::Setup,
         AutomationTarget{QString(), std::nullopt, false}},
        {[](auto &f) { f.stored->sourceID = "gone"; f.secure = true; }, RuntimeState::MissingSource,
         AutomationTarget{"gone", std::nullopt, false}},
        {[](auto &f) { f.secure = true; }, RuntimeState::SecureInput, usTarget},
        {[](auto &f) { f.keymapHeld = true; }, RuntimeState::KeymapHeld, usTarget},
        // Unreachable sources are an error, not a missing pin, and do not matter while paused.
        {unreachable, RuntimeState::Error, unreachableUs},
        {[&](auto &f) { unreachable(f); f.stored->enabled = false; }, RuntimeState::Paused, unreachableUs}};
    // clang-format on
    for (size_t row = 0; row < std::size(rows); ++row) {
        SCOPED_TRACE(row);
        const auto &[arrange, state, target] = rows[row];
        FakeServices fake;
        fake.stored = Config{.sourceID = us, .enabled = true, .onboardingCompleted = true};
        arrange(fake);
        const auto status = Automation(fake.services()).status();
        ASSERT_TRUE(status.ok()) << qPrintable(status.error().code);
        EXPECT_EQ(status->state.raw(), RuntimeState(state).raw());
        EXPECT_EQ(status->target, target);
        EXPECT_EQ(status->current, (AutomationSource{fake.current.id, fake.current.name}));
        EXPECT_EQ(status->backendError, fake.availability == InputSources::Availability::available
                                            ? std::nullopt
                                            : std::optional(AutomationFailure::gnomeExtensionOff()));
    }
}

TEST(AutomationTest, KeepingCommandsEditOnlyEnabled)
{
    using C = CLIRequest::Command;
    const Config pinnedOff{us, false, "ja", true};
    const Config gone{"gone", false, std::nullopt, true};
    // Stored configuration, command, GNOME extension running?; then keeping afterwards, or the refusal.
    // clang-format off
    const std::tuple<std::optional<Config>, C, bool, std::variant<bool, AutomationFailure>> rows[] = {
        {Config{}, C::Pause, true, false}, {std::nullopt, C::Pause, true, false},
        {Config{}, C::Resume, true, AutomationFailure::noTarget()},
        {gone, C::Resume, true, AutomationFailure::missingSource()},
        {pinnedOff, C::Resume, false, AutomationFailure::gnomeExtensionOff()},
        {Config{.sourceID = "gone", .enabled = true, .onboardingCompleted = true}, C::Toggle, true, false}, // toggling off ignores the pin
        {pinnedOff, C::Toggle, true, true}, {Config{}, C::Toggle, true, AutomationFailure::noTarget()}};
    // clang-format on
    for (size_t row = 0; row < std::size(rows); ++row) {
        SCOPED_TRACE(row);
        const auto &[stored, command, extension, outcome] = rows[row];
        FakeServices fake;
        fake.stored = stored;
        if (!extension)
            fake.availability = InputSources::Availability::extensionOff;
        const auto status = Automation(fake.services()).setKeeping(command);
        if (const AutomationFailure *failure = std::get_if<AutomationFailure>(&outcome)) {
            ASSERT_FALSE(status.ok());
            EXPECT_EQ(status.error(), *failure);
            EXPECT_EQ(fake.writes, 0) << "a refused edit writes nothing";
            continue;
        }
        ASSERT_TRUE(status.ok()) << qPrintable(status.error().code);
        Config expected = stored.value_or(Config{});
        expected.enabled = std::get<bool>(outcome);
        EXPECT_EQ(status->enabled, expected.enabled);
        EXPECT_EQ(fake.stored, expected);
    }
}

AutomationStatus keeping()
{
    const AutomationSource en{us, "English (US)"};
    return {true, true, RuntimeState::Keeping,    en, AutomationTarget{en.id, en.name, true}, false, true, "ibus",
            {},   {},   {"tray", "keyboard_menu"}};
}

AutomationStatus goneTarget()
{
    AutomationStatus status = keeping();
    status.running = false;
    status.state = RuntimeState::Stopped;
    status.target = AutomationTarget{"m17n:zh/py", std::nullopt, false};
    status.current = {"com.example/é", "Ünïcode \"quoted\""};
    status.shownIn.clear();
    return status;
}

TEST(AutomationResponseTest, EncodesByteForByte)
{
    // clang-format off
    const std::pair<AutomationResponse, const char *> rows[] = {
        {AutomationResponse::success("status", keeping()),
            R"j({"command":"status","ok":true,"schemaVersion":1,"status":{"backend":"ibus",)j"
            R"j("current":{"id":"xkb:us::eng","name":"English (US)"},)j"
            R"j("enabled":true,"loginEnabled":false,"onboardingCompleted":true,"running":true,)j"
            R"j("shownIn":["tray","keyboard_menu"],"state":"keeping",)j"
            R"j("target":{"available":true,"id":"xkb:us::eng","name":"English (US)"}}})j"},
        {AutomationResponse::success("status", goneTarget()),
            "{\"command\":\"status\",\"ok\":true,\"schemaVersion\":1,\"status\":{\"backend\":\"ibus\",\"current\":{"
            "\"id\":\"com.example/"
            "\xc3\xa9\","
            "\"name\":\"\xc3\x9cn\xc3\xaf"
            "code \\\"quoted\\\"\"},\"enabled\":true,\"loginEnabled\":false,\"onboardingCompleted\":true,"
            "\"running\":false,\"shownIn\":[],\"state\":\"stopped\",\"target\":{\"available\":false,\"id\":\"m17n:zh/py\"}}}"},
        {AutomationResponse::listing("list", {{"xkb:us::eng", "English (US)"}, {"hangul", "Korean"}}),
            R"j({"command":"list","ok":true,"schemaVersion":1,"sources":[{"id":"xkb:us::eng","name":"English (US)"},)j"
            R"j({"id":"hangul","name":"Korean"}]})j"},
        {AutomationResponse::failure("lsit", AutomationFailure::invalidArguments()),
            R"j({"command":"lsit","error":{"code":"invalid_arguments","message":"Invalid command or arguments. )j"
            R"j(Run tolvar help for usage."},"ok":false,"schemaVersion":1})j"}};
    // clang-format on
    for (const auto &[response, json] : rows)
        EXPECT_EQ(response.encoded(), QByteArray(json));
}

} // namespace
