#include "core/login/AgentController.h"
#include "platform/XdgAutostart.h"
#include "support/ParamName.h"
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

// What a step's failure leaves: the entry, and whether the earlier systemd unit is gone.
struct AutostartCase
{
    const char *name;
    bool install;
    bool refuseWrite;
    bool refuseLink;
    bool previousEntry;
    bool succeeds;
    bool entryAfter;
    bool unitGone;
};

class AutostartTest : public testing::TestWithParam<AutostartCase>
{
protected:
    QString path(const char *relative) const { return m_home.filePath(QLatin1String(relative)); }

    QTemporaryDir m_home;
};

TEST_P(AutostartTest, InstallsRemovesAndRollsBack)
{
    const AutostartCase &c = GetParam();
    const ServiceManager manager = XdgAutostart::manager(path(".config"));
    QDir().mkpath(path(".config/systemd/user/graphical-session.target.wants"));
    writeFile(path(".config/systemd/user/app.tolvar.service"), {});
    QFile::link(path(".config/systemd/user/app.tolvar.service"),
                path(".config/systemd/user/graphical-session.target.wants/app.tolvar.service"));
    if (c.previousEntry)
        writeFile(manager.agentFile, "[Desktop Entry]\nHidden=true\n");
    FileOperations files = FileOperations::live();
    if (c.refuseWrite)
        files.writeAtomically = [](const QString &p, const QByteArray &) {
            return Expected<void>(Error::posix(EACCES, p));
        };
    if (c.refuseLink)
        files.createLink = [](const QString &p, const QString &) -> Expected<void> { return Error::posix(EACCES, p); };
    const AgentController controller(m_home.path(), manager, files, [](const QString &, const QStringList &) {
        ADD_FAILURE() << "autostart runs no program";
        return LaunchctlResult{1, {}};
    });

    const Expected<void> result = c.install ? controller.install("/bin/sh", true) : controller.uninstall(true);
    EXPECT_EQ(result.ok(), c.succeeds);
    EXPECT_EQ(controller.isLoginEnabled(), c.entryAfter);
    EXPECT_EQ(QFileInfo::exists(path(".config/systemd/user/app.tolvar.service")), !c.unitGone);
    EXPECT_EQ(QFileInfo(path(".config/systemd/user/graphical-session.target.wants/app.tolvar.service")).isSymLink(),
              !c.unitGone);
}

// Each row: install?, refuse the write?, refuse the link?, an entry before?; then success, entry after, unit gone.
// clang-format off
INSTANTIATE_TEST_SUITE_P(XdgAutostart, AutostartTest, testing::Values(
    AutostartCase{"InstallOverHidden", true, false, false, true, true, true, true},
    AutostartCase{"WriteFails", true, true, false, false, false, false, false},
    AutostartCase{"LinkFailsRollsBack", true, false, true, true, false, false, false},
    AutostartCase{"Uninstall", false, false, false, true, true, false, true}),
    ParamName());
// clang-format on

} // namespace
