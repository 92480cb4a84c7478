#include "platform/AppBundle.h"

#include <gtest/gtest.h>

namespace {

TEST(AppBundleTest, DecidesFromThePath)
{
    using Row = std::tuple<QString, QString, QString>; // executable; then the bundle (empty: none), the resources
    for (const auto &[executable, bundle, resources] :
         {Row{"/Applications//Tolvar.app/Contents/MacOS/./Tolvar", "/Applications/Tolvar.app",
              "/Applications/Tolvar.app/Contents/Resources"},
          Row{"/src/build/bin/tolvar", "", "/src/build/share/tolvar"},
          Row{"/x/Tolvar.app/Contents/MacOS/bin/tolvar", "", "/x/Tolvar.app/Contents/MacOS/share/tolvar"},
          Row{"/x/Tolvar.APP/Contents/MacOS/Tolvar", "", "/x/Tolvar.APP/Contents/share/tolvar"}}) {
        SCOPED_TRACE(executable.toStdString());
        EXPECT_EQ(AppBundle::containing(executable).value_or(QString()), bundle);
        EXPECT_EQ(AppBundle::resourceDirectory(executable), resources);
        const std::optional<QStringList> open = AppBundle::openArguments(executable);
        ASSERT_EQ(open.has_value(), !bundle.isEmpty());
        // The bundle itself is started, never the bare executable.
        if (open) {
            EXPECT_EQ(open->mid(0, 2), QStringList({"-a", bundle}));
        }
    }
}

} // namespace
