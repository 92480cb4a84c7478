#include "core/cli/CLIRequest.h"
#include "support/ParamName.h"

#include <gtest/gtest.h>

namespace {

using Command = CLIRequest::Command;

struct ParseCase
{
    const char *name;
    QStringList arguments;
    std::optional<CLIRequest> expected; // absent: refused
};

const QString id = QStringLiteral("xkb:us::eng");
const QString json = QStringLiteral("--json");

CLIRequest request(Command command, bool asJson = false, std::optional<QString> sourceID = std::nullopt)
{
    return {command, std::move(sourceID), asJson};
}

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

INSTANTIATE_TEST_SUITE_P(
    Accepted, CLIRequestParseTest,
    testing::Values(ParseCase{"NothingIsStatus", {}, request(Command::Status)},
                    ParseCase{"JsonAloneIsStatus", {json}, request(Command::Status, true)},
                    ParseCase{
                        "JsonBetweenSetAndID", {QStringLiteral("set"), json, id}, request(Command::Set, true, id)},
                    ParseCase{"JsonFirst", {json, QStringLiteral("set"), id}, request(Command::Set, true, id)},
                    ParseCase{"JsonLast", {QStringLiteral("list"), json}, request(Command::List, true)},
                    ParseCase{"Install", {QStringLiteral("install"), id}, request(Command::Install, false, id)},
                    ParseCase{"IdentifierWithSlashes",
                              {QStringLiteral("set"), QStringLiteral("m17n:zh:py/x")},
                              request(Command::Set, false, QStringLiteral("m17n:zh:py/x"))},
                    ParseCase{"Help", {QStringLiteral("help")}, request(Command::Help)},
                    ParseCase{"ShortHelp", {QStringLiteral("-h")}, request(Command::Help)},
                    ParseCase{"LongHelp", {QStringLiteral("--help")}, request(Command::Help)},
                    ParseCase{"Toggle", {QStringLiteral("toggle"), json}, request(Command::Toggle, true)}),
    ParamName());

INSTANTIATE_TEST_SUITE_P(
    Refused, CLIRequestParseTest,
    testing::Values(ParseCase{"JsonTwice", {json, json}, std::nullopt},
                    ParseCase{"StatusJsonTwice", {QStringLiteral("status"), json, json}, std::nullopt},
                    ParseCase{"SetWithoutID", {QStringLiteral("set")}, std::nullopt},
                    ParseCase{"SetTwoIDs", {QStringLiteral("set"), id, id}, std::nullopt},
                    ParseCase{"SetHyphenID", {QStringLiteral("set"), QStringLiteral("-x")}, std::nullopt},
                    ParseCase{"SetEmptyID", {QStringLiteral("set"), QString()}, std::nullopt},
                    ParseCase{"InstallWithoutID", {QStringLiteral("install")}, std::nullopt},
                    ParseCase{"StatusExtra", {QStringLiteral("status"), QStringLiteral("extra")}, std::nullopt},
                    ParseCase{"PauseExtra", {QStringLiteral("pause"), QStringLiteral("now")}, std::nullopt},
                    ParseCase{"HelpJson", {QStringLiteral("help"), json}, std::nullopt},
                    ParseCase{"ShortHelpJson", {QStringLiteral("-h"), json}, std::nullopt},
                    ParseCase{"HelpWithWord", {QStringLiteral("help"), QStringLiteral("me")}, std::nullopt},
                    ParseCase{
                        "HelpFlagAfterCommand", {QStringLiteral("status"), QStringLiteral("--help")}, std::nullopt},
                    ParseCase{"Capitalised", {QStringLiteral("Status")}, std::nullopt},
                    ParseCase{"EmptyWord", {QString()}, std::nullopt},
                    ParseCase{"ModeWordIsNoCommand", {QStringLiteral("gui")}, std::nullopt}),
    ParamName());

TEST(CLIRequestWordTest, EveryCommandRoundTrips)
{
    const QStringList expected = {QStringLiteral("status"),    QStringLiteral("list"),  QStringLiteral("set"),
                                  QStringLiteral("apply"),     QStringLiteral("open"),  QStringLiteral("install"),
                                  QStringLiteral("uninstall"), QStringLiteral("pause"), QStringLiteral("resume"),
                                  QStringLiteral("toggle"),    QStringLiteral("help")};
    for (int i = 0; i < expected.size(); ++i) {
        const auto command = static_cast<Command>(i);
        EXPECT_EQ(CLIRequest::word(command), expected.at(i));
        EXPECT_EQ(CLIRequest::commandNamed(expected.at(i)), command);
    }
    EXPECT_EQ(CLIRequest::commandNamed(QStringLiteral("-h")), std::nullopt);
}

} // namespace
