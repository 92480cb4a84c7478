#include "core/login/AgentController.h"
#include "platform/files/XdgConfigHome.h"
#include "platform/login/LaunchdService.h"
#include "platform/login/XdgAutostart.h"
#include "support/Process.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <cerrno>

namespace {

using Mark = ServiceManager::Mark;

ServiceToolResult listing(const char *entries)
{
    return {0, QStringLiteral("disabled services = {\n%1}\n").arg(QLatin1String(entries))};
}

const auto launchd = LaunchdService::readMark;
const auto autostart = XdgAutostart::readMark;

TEST(ServiceMarkTest, ReadsTheDisabledQuery)
{
    using Row = std::tuple<Mark (*)(const ServiceToolResult &), ServiceToolResult, Mark>;
    // clang-format off
    const Row rows[] = {
        {launchd, listing("\t\"com.example.other\" => disabled\n"), Mark::NotDisabled},
        {launchd, listing("\t\"app.tolvar\" => disabled\n"), Mark::Disabled},
        {launchd, listing("\t\"app.tolvar\" => true\n"), Mark::Disabled},
        {launchd, listing("\t\"app.tolvar\" => maybe\n"), Mark::Unreadable},
        {launchd, listing("\t\"app.tolvar.x\" => disabled\n"), Mark::NotDisabled},
        {launchd, listing("\t\"appxtolvar\" => disabled\n"), Mark::NotDisabled},
        {launchd, {0, QStringLiteral("\"app.tolvar\" => disabled\n}\n")}, Mark::Unreadable},
        {launchd, {0, QStringLiteral("disabled services = {\n")}, Mark::Unreadable},
        {launchd, {113, QString()}, Mark::QueryFailed},
        {autostart, {0, QStringLiteral("[Desktop Entry]\n X-GNOME-Autostart-enabled=false\n")}, Mark::Disabled},
        {autostart, {0, QStringLiteral("[Desktop Entry]\nHidden=false\n")}, Mark::NotDisabled}};
    // clang-format on
    for (size_t row = 0; row < std::size(rows); ++row)
        EXPECT_EQ(std::get<0>(rows[row])(std::get<1>(rows[row])), std::get<2>(rows[row])) << "row " << row;
}

// Around a fixed text, the path is what can break the document: it reads back as given.
TEST(LaunchdPlistTest, ReadsBackThePathItWasGiven)
{
    const QString path = QStringLiteral("/Users/a&b/<x>/tolvar");
    QXmlStreamReader plist(LaunchdService::propertyList(path));
    QStringList strings;
    while (!plist.atEnd()) {
        if (plist.readNext() == QXmlStreamReader::StartElement && plist.name() == QLatin1String("string"))
            strings << plist.readElementText();
    }
    EXPECT_FALSE(plist.hasError()) << qPrintable(plist.errorString());
    EXPECT_EQ(strings, (QStringList{"app.tolvar", "Aqua", path, "background"}));
}

TEST(XdgConfigHomeTest, FollowsTheBaseDirectoryRules)
{
    EXPECT_EQ(XdgConfigHome::of("/home/u", QString()), "/home/u/.config");
    EXPECT_EQ(XdgConfigHome::of("/home/u", "/srv/conf/"), "/srv/conf");
    EXPECT_EQ(XdgConfigHome::of("/home/u", "conf"), "/home/u/.config") << "a relative path is ignored";
}

// Around a fixed text, the quoting of the path is what can break the entry.
TEST(XdgAutostartTest, QuotesThePathAsTheDesktopEntryRulesSay)
{
    EXPECT_TRUE(XdgAutostart::entry(QStringLiteral("/opt/my \"apps\"/100%/tol$var"))
                    .contains("\nExec=\"/opt/my \\\\\"apps\\\\\"/100%%/tol\\\\$var\" background\n"));
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
            return ServiceToolResult{1, {}};
        });

        const Expected<void> result = install ? controller.install("/bin/sh", true) : controller.uninstall(true);
        EXPECT_EQ(result.ok(), succeeds);
        EXPECT_EQ(controller.isLoginEnabled(), install && succeeds);
        EXPECT_EQ(QFileInfo::exists(unit), !succeeds);
        EXPECT_EQ(QFileInfo(wanted).isSymLink(), !succeeds);
    }
}

} // namespace
