#include "core/cli/AutomationResponse.h"

#include <gtest/gtest.h>

namespace {

AutomationStatus keeping()
{
    const AutomationSource us{"xkb:us::eng", "English (US)"};
    return {true, true, RuntimeState::Keeping, us, AutomationTarget{us.id, us.name, true}, false, true, "ibus"};
}

AutomationStatus goneTarget()
{
    AutomationStatus status = keeping();
    status.running = false;
    status.state = RuntimeState::Stopped;
    status.target = AutomationTarget{"m17n:zh/py", std::nullopt, false};
    status.current = {"com.example/é", "Ünïcode \"quoted\""};
    return status;
}

TEST(AutomationResponseTest, EncodesByteForByte)
{
    // clang-format off
    const std::pair<AutomationResponse, const char *> rows[] = {
        {AutomationResponse::success("status", keeping()),
            R"j({"command":"status","ok":true,"schemaVersion":1,"status":{"backend":"ibus",)j"
            R"j("current":{"id":"xkb:us::eng","name":"English (US)"},)j"
            R"j("enabled":true,"loginEnabled":false,"onboardingCompleted":true,"running":true,"state":"keeping",)j"
            R"j("target":{"available":true,"id":"xkb:us::eng","name":"English (US)"}}})j"},
        {AutomationResponse::success("status", goneTarget()),
            "{\"command\":\"status\",\"ok\":true,\"schemaVersion\":1,\"status\":{\"backend\":\"ibus\",\"current\":{"
            "\"id\":\"com.example/"
            "\xc3\xa9\","
            "\"name\":\"\xc3\x9cn\xc3\xaf"
            "code \\\"quoted\\\"\"},\"enabled\":true,\"loginEnabled\":false,\"onboardingCompleted\":true,"
            "\"running\":false,\"state\":\"stopped\",\"target\":{\"available\":false,\"id\":\"m17n:zh/py\"}}}"},
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
