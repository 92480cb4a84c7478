#include "core/cli/CLIRequest.h"

#include <gtest/gtest.h>

namespace {

using enum CLIRequest::Command;

TEST(CLIRequestTest, AcceptsOrRefuses)
{
    const QString id = "m17n:zh:py/x";
    // clang-format off
    const std::pair<QStringList, CLIRequest> accepted[] = {
        {{}, {Status, std::nullopt, false}}, {{"--json"}, {Status, std::nullopt, true}},
        {{"set", "--json", id}, {Set, id, true}}, {{"--json", "install", id}, {Install, id, true}},
        {{"-h"}, {Help, std::nullopt, false}}, {{"--help"}, {Help, std::nullopt, false}}};
    // clang-format on
    for (const auto &[arguments, expected] : accepted)
        EXPECT_EQ(CLIRequest::parse(arguments).value(), expected) << qPrintable(arguments.join(' '));
    // clang-format off
    const QList<QStringList> refused = {{"status", "--json", "--json"}, {"set"}, {"set", id, id}, {"set", "-x"},
        {"set", ""}, {"install"}, {"pause", "now"}, {"-h", "--json"}, {"help", "me"}, {"status", "--help"}, {"Status"},
        {""}, {"gui"}};
    // clang-format on
    for (const QStringList &arguments : refused) {
        const auto parsed = CLIRequest::parse(arguments);
        ASSERT_FALSE(parsed.ok()) << qPrintable(arguments.join(' '));
        // A refused line still answers as asked, naming the word it was given.
        EXPECT_EQ(parsed.error(), (CLIRequest::Refusal{arguments.first(), arguments.contains("--json")}));
    }
}

} // namespace
