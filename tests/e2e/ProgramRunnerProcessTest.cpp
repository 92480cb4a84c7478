#include "platform/login/ProgramRunner.h"
#include "support/ParamName.h"

#include <gtest/gtest.h>

namespace {

struct RunCase
{
    const char *name;
    QString program;
    QString script;
    ServiceToolResult expected;
};

using ProgramRunnerTest = testing::TestWithParam<RunCase>;

TEST_P(ProgramRunnerTest, ReportsStatusAndStandardOutput)
{
    const ServiceToolResult result = ProgramRunner::run(
        GetParam().program, {QStringLiteral("-c"), GetParam().script, QStringLiteral("not-a-shell")});
    EXPECT_EQ(result.status, GetParam().expected.status);
    EXPECT_EQ(result.output.toStdString(), GetParam().expected.output.toStdString());
}

const QString shell = QStringLiteral("/bin/sh");

// clang-format off
INSTANTIATE_TEST_SUITE_P(, ProgramRunnerTest, testing::Values(
    RunCase{"StandardErrorIsDiscarded", shell, "echo hi; echo err >&2; exit 3", {3, "hi\n"}},
    // Arguments reach the program as they are, never through a shell.
    RunCase{"ArgumentsAreNotInterpreted", shell, "printf '%s' \"$0\"", {0, "not-a-shell"}},
    RunCase{"ProgramThatCannotStart", "/nonexistent/program", QString(), {1, QString()}},
    RunCase{"KilledBySignal", shell, "kill -9 $$", {9, QString()}},
    RunCase{"InvalidUtf8IsRepaired", shell, "printf 'a\\377b'", {0, "a\uFFFDb"}},
    // More than a pipe holds: the reader must keep draining while the program runs.
    RunCase{"LongOutputIsReadToTheEnd", shell, "head -c 1000000 /dev/zero | tr '\\0' a", {0, QString(1000000, 'a')}},
    RunCase{"StandardInputIsEmpty", shell, "cat; echo done", {0, "done\n"}}),
    ParamName());
// clang-format on

} // namespace
