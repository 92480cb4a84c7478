#include "core/login/AgentController.h"
#include "platform/XdgAutostart.h"
#include "support/Process.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>

namespace {

TEST(XdgAutostartTest, EntryText)
{
    EXPECT_EQ(XdgAutostart::entry(QStringLiteral("/opt/my \"apps\"/100%/tol$var")),
              QByteArray("[Desktop Entry]\n"
                         "Type=Application\n"
                         "Name=Tolvar\n"
                         "Exec=\"/opt/my \\\\\"apps\\\\\"/100%%/tol\\\\$var\" background\n"
                         "Terminal=false\n"
                         "NoDisplay=true\n"));
}

// A failing step leaves no entry and the earlier systemd unit in place.
TEST(XdgAutostartTest, InstallsRemovesAndRollsBack)
{
    using Row = std::tuple<bool, bool, bool, bool, bool>; // install?, refuse write?, refuse link?, entry before?; ok?
    for (const auto &[install, refuseWrite, refuseLink, previousEntry, succeeds] :
         {Row{true, false, false, true, true}, Row{true, true, false, false, false},
          Row{true, false, true, true, false}, Row{false, false, false, true, true}}) {
        SCOPED_TRACE(testing::Message() << install << refuseWrite << refuseLink << previousEntry);
        QTemporaryDir home;
        const auto path = [&](const char *relative) { return home.filePath(relative); };
        const ServiceManager manager = XdgAutostart::manager(path(".config"));
        const QString unit = path(".config/systemd/user/app.tolvar.service");
        const QString wanted = path(".config/systemd/user/graphical-session.target.wants/app.tolvar.service");
        writeFile(unit, {});
        QDir().mkpath(QFileInfo(wanted).absolutePath());
        QFile::link(unit, wanted);
        if (previousEntry)
            writeFile(manager.agentFile, "[Desktop Entry]\nHidden=true\n");
        FileOperations files = FileOperations::live();
        const auto refuse = [](const QString &p, const auto &) { return Expected<void>(Error::posix(EACCES, p)); };
        if (refuseWrite)
            files.writeAtomically = refuse;
        if (refuseLink)
            files.createLink = refuse;
        const AgentController controller(home.path(), manager, files, [](const QString &, const QStringList &) {
            ADD_FAILURE() << "autostart runs no program";
            return LaunchctlResult{1, {}};
        });

        const Expected<void> result = install ? controller.install("/bin/sh", true) : controller.uninstall(true);
        EXPECT_EQ(result.ok(), succeeds);
        EXPECT_EQ(controller.isLoginEnabled(), install && succeeds);
        EXPECT_EQ(QFileInfo::exists(unit), !succeeds);
        EXPECT_EQ(QFileInfo(wanted).isSymLink(), !succeeds);
    }
}

} // namespace
