#include "platform/AppBundle.h"

#include "support/ParamName.h"

#include <gtest/gtest.h>

namespace {

struct BundleCase
{
    const char *name;
    const char *executable;
    const char *bundle; // empty: not inside one
    const char *resources;
};

using AppBundleTest = testing::TestWithParam<BundleCase>;

TEST_P(AppBundleTest, DecidesFromThePath)
{
    const BundleCase &row = GetParam();
    const QString executable = QString::fromUtf8(row.executable);
    const QString bundle = QString::fromUtf8(row.bundle);
    EXPECT_EQ(AppBundle::containing(executable).value_or(QString()), bundle);
    EXPECT_EQ(AppBundle::resourceDirectory(executable), QString::fromUtf8(row.resources));
    const std::optional<QStringList> open = AppBundle::openArguments(executable);
    ASSERT_EQ(open.has_value(), !bundle.isEmpty());
    if (open) { // the bundle itself is started, never the bare executable
        EXPECT_EQ(open->mid(0, 2), QStringList({QStringLiteral("-a"), bundle}));
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Paths, AppBundleTest, testing::Values(
    BundleCase{"UncleanPath", "/Applications//Tolvar.app/Contents/MacOS/./Tolvar", "/Applications/Tolvar.app",
               "/Applications/Tolvar.app/Contents/Resources"},
    BundleCase{"BuildTree", "/src/build/bin/tolvar", "", "/src/build/share/tolvar"},
    BundleCase{"AppFolderOneLevelTooHigh", "/x/Tolvar.app/Contents/MacOS/bin/tolvar", "", "/x/Tolvar.app/Contents/MacOS/share/tolvar"},
    BundleCase{"ExtensionIsCaseSensitive", "/x/Tolvar.APP/Contents/MacOS/Tolvar", "", "/x/Tolvar.APP/Contents/share/tolvar"}),
    ParamName());
// clang-format on

} // namespace
