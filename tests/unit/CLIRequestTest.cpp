#include "core/cli/CLIRequest.h"
#include "support/ParamName.h"

#include <gtest/gtest.h>

namespace {

using enum CLIRequest::Command;

struct ParseCase
{
    const char *name;
    QStringList arguments;
    std::optional<CLIRequest> expected; // absent: refused
};

class CLIRequestParseTest : public testing::TestWithParam<ParseCase>
{
};

TEST_P(CLIRequestParseTest, AcceptsOrRefuses)
{
    const auto parsed = CLIRequest::parse(GetParam().arguments);
    if (!GetParam().expected) {
        ASSERT_FALSE(parsed.ok());
        EXPECT_EQ(parsed.error(), AutomationFailure::invalidArguments());
        return;
    }
    ASSERT_TRUE(parsed.ok()) << qPrintable(parsed.error().message);
    EXPECT_EQ(parsed.value(), *GetParam().expected);
}

const QString id = "m17n:zh:py/x";
const std::nullopt_t refused = std::nullopt;

// clang-format off
INSTANTIATE_TEST_SUITE_P(CLIRequest, CLIRequestParseTest, testing::Values(
    ParseCase{"NothingIsStatus", {}, CLIRequest{Status, std::nullopt, false}},
    ParseCase{"JsonAloneIsStatus", {"--json"}, CLIRequest{Status, std::nullopt, true}},
    ParseCase{"JsonBetweenSetAndID", {"set", "--json", id}, CLIRequest{Set, id, true}},
    ParseCase{"JsonFirst", {"--json", "install", id}, CLIRequest{Install, id, true}},
    ParseCase{"ShortHelp", {"-h"}, CLIRequest{Help, std::nullopt, false}},
    ParseCase{"LongHelp", {"--help"}, CLIRequest{Help, std::nullopt, false}},
    ParseCase{"JsonTwice", {"status", "--json", "--json"}, refused},
    ParseCase{"SetWithoutID", {"set"}, refused},
    ParseCase{"SetTwoIDs", {"set", id, id}, refused},
    ParseCase{"SetHyphenID", {"set", "-x"}, refused},
    ParseCase{"SetEmptyID", {"set", ""}, refused},
    ParseCase{"InstallWithoutID", {"install"}, refused},
    ParseCase{"PauseExtra", {"pause", "now"}, refused},
    ParseCase{"HelpJson", {"-h", "--json"}, refused},
    ParseCase{"HelpWithWord", {"help", "me"}, refused},
    ParseCase{"HelpFlagAfterCommand", {"status", "--help"}, refused},
    ParseCase{"Capitalised", {"Status"}, refused},
    ParseCase{"EmptyWord", {""}, refused},
    ParseCase{"ModeWordIsNoCommand", {"gui"}, refused}),
    ParamName());
// clang-format on

} // namespace
