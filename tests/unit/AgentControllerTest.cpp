#include "core/login/AgentController.h"
#include "core/login/AgentError.h"
#include "platform/login/LaunchdService.h"
#include "support/ParamName.h"
#include "support/Process.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

namespace {

enum class Step { DisabledQuery, LoadedQuery, Enable, Load, Disable, Unload };
enum class State { NotDisabled, Disabled, Unreadable };
// What stands at the agent file's or the command link's path.
enum class Place { Nothing, NewFile, OldFile, Folder, CorrectLink, OtherLink, RegularFile };
enum class Fault { None, Unrunnable, RefuseLink, RefuseRemove };
// clang-format off
enum class Outcome { Ok, NotExecutable, CommandConflict, StateUnavailable, ReadFailed, AgentFileConflict, StepFailed,
                     LinkRefused, RollbackFailed };
// clang-format on
using enum Step;
using enum State;
using enum Place;
using enum Fault;
using enum Outcome;

// The disabled query's answer for each State.
const ServiceToolResult answers[] = {{0, "disabled services = {\n}\n"},
                                     {0, "disabled services = {\n\t\"app.tolvar\" => disabled\n}\n"},
                                     {0, "disabled services = {\n"}};
constexpr unsigned userId = 501;

constexpr int failedStatus = 5;

// A temporary home with a real executable reached through a symbolic link, and
// a scripted service manager that records the step of every command line it is given.
class Scene
{
public:
    Scene(State state, bool loaded, std::vector<Step> failing)
        : m_manager(LaunchdService::manager(m_home.path(), userId))
        , m_state(state)
        , m_loaded(loaded)
        , m_failing(std::move(failing))
    {
        writeFile(m_home.filePath("opt/tolvar"), {});
        QFile file(m_home.filePath("opt/tolvar"));
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        m_executable = QFileInfo(file).canonicalFilePath();
        QFile::link(m_executable, givenExecutable());
    }

    AgentController controller() const
    {
        return AgentController(m_home.path(), m_manager, files,
                               [this](const QString &program, const QStringList &arguments) {
                                   return answer(QStringList{program} + arguments);
                               });
    }

    void put(const QString &path, Place place) const
    {
        QDir().mkpath(place == Folder ? path : QFileInfo(path).absolutePath());
        if (place == OldFile || place == RegularFile)
            writeFile(path, place == OldFile ? "previous" : "x");
        if (place == CorrectLink || place == OtherLink)
            QFile::link(place == CorrectLink ? m_executable : "/bin/sh", path);
    }

    Place at(const QString &path) const
    {
        const QFileInfo info(path);
        if (info.isSymLink())
            return info.symLinkTarget() == m_executable ? CorrectLink : OtherLink;
        if (info.isDir() || !info.exists())
            return info.isDir() ? Folder : Nothing;
        const QByteArray bytes = readFile(path);
        if (bytes == m_manager.agentContent(m_executable))
            return NewFile;
        return bytes == "previous" ? OldFile : RegularFile;
    }

    Expected<void> expected(Outcome outcome) const
    {
        const auto failed = [&](Step step) { return AgentError::commandFailed(arguments(step).first(), failedStatus); };
        switch (outcome) {
        case Ok: return {};
        case NotExecutable: return AgentError::executable(m_executable);
        case CommandConflict: return AgentError::commandConflict(commandLink());
        case StateUnavailable: return AgentError::stateUnavailable();
        case ReadFailed: return Error::posix(EISDIR, agentFile());
        case AgentFileConflict: return AgentError::agentFileConflict(agentFile());
        case StepFailed: return failed(m_failing.front());
        case LinkRefused: return Error::posix(EACCES, commandLink());
        case RollbackFailed:
            return AgentError::rollback(
                failed(Load), {Error::posix(EACCES, agentFile()).description(), failed(Disable).description()});
        }
        return {};
    }

    QString agentFile() const { return m_manager.agentFile; }
    QStringList arguments(Step step) const
    {
        const QStringList ServiceManager::*const steps[] = {
            &ServiceManager::disabledQuery, &ServiceManager::loadedQuery, &ServiceManager::enable,
            &ServiceManager::load,          &ServiceManager::disable,     &ServiceManager::unload};
        return m_manager.*steps[static_cast<int>(step)];
    }
    QString commandLink() const { return m_home.filePath(QStringLiteral(".local/bin/tolvar")); }
    QString givenExecutable() const { return m_home.filePath(QStringLiteral("tolvar-link")); }
    const std::vector<Step> &ran() const { return m_ran; }

    FileOperations files = FileOperations::live();

private:
    ServiceToolResult answer(const QStringList &line) const
    {
        for (const Step step : {DisabledQuery, LoadedQuery, Enable, Load, Disable, Unload}) {
            if (line != QStringList{m_manager.program} + arguments(step))
                continue;
            m_ran.push_back(step);
            if (step == DisabledQuery)
                return answers[static_cast<int>(m_state)];
            if (step == LoadedQuery)
                return {m_loaded ? 0 : 3, QString()};
            return {std::count(m_failing.begin(), m_failing.end(), step) ? failedStatus : 0, QString()};
        }
        ADD_FAILURE() << "unexpected command line: " << qPrintable(line.join(' '));
        return {1, QString()};
    }

    QTemporaryDir m_home;
    ServiceManager m_manager;
    State m_state;
    bool m_loaded;
    std::vector<Step> m_failing;
    QString m_executable;
    mutable std::vector<Step> m_ran;
};

std::string described(const Expected<void> &result)
{
    return result ? std::string("ok") : result.error().description().toStdString();
}

void inject(Fault fault, FileOperations &files)
{
    const auto refuse = [](const QString &path, const auto &...) { return Expected<void>(Error::posix(EACCES, path)); };
    if (fault == Unrunnable)
        files.isExecutableFile = [](const QString &) { return false; };
    if (fault == RefuseLink)
        files.createLink = refuse;
    if (fault == RefuseRemove)
        files.remove = refuse;
}

struct InstallCase
{
    const char *name;
    bool installCommand;
    Place agentFile;
    Place commandLink;
    State state;
    bool loaded;
    std::vector<Step> failing;
    Fault fault;
    std::vector<Step> steps;
    Outcome outcome;
    Place agentFileAfter;
    Place commandLinkAfter;
};

using AgentInstallTest = testing::TestWithParam<InstallCase>;

TEST_P(AgentInstallTest, DrivesTheServiceManagerAndUndoesFailures)
{
    const InstallCase &row = GetParam();
    Scene scene(row.state, row.loaded, row.failing);
    scene.put(scene.agentFile(), row.agentFile);
    scene.put(scene.commandLink(), row.commandLink);
    inject(row.fault, scene.files);

    const Expected<void> result = scene.controller().install(scene.givenExecutable(), row.installCommand);

    EXPECT_EQ(described(result), described(scene.expected(row.outcome)));
    EXPECT_EQ(scene.ran(), row.steps);
    EXPECT_EQ(scene.at(scene.agentFile()), row.agentFileAfter);
    EXPECT_EQ(scene.at(scene.commandLink()), row.commandLinkAfter);
}

const std::vector<Step> full = {DisabledQuery, LoadedQuery, Enable, Load};
const std::vector<Step> rolledBack = {DisabledQuery, LoadedQuery, Enable, Load, Disable};

// Each row: with the command link?, agent file and command link before, disabled mark, loaded?, failing
// commands, file fault; then the commands run, the outcome, agent file and command link after.
// clang-format off
const InstallCase installCases[] = {
    {"FreshInstall", false, Nothing, Nothing, NotDisabled, false, {}, None, full, Ok, NewFile, Nothing},
    {"CommandLinkToTheResolvedExecutable", true, Nothing, Nothing, NotDisabled, false, {}, None, full, Ok, NewFile,
     CorrectLink},
    {"LoadedAgentIsNotLoadedAgain", false, Nothing, Nothing, NotDisabled, true, {}, None,
     {DisabledQuery, LoadedQuery, Enable}, Ok, NewFile, Nothing},
    {"UnrunnableExecutable", false, Nothing, Nothing, NotDisabled, false, {}, Unrunnable, {}, NotExecutable, Nothing,
     Nothing},
    {"RegularFileAtTheCommandLink", true, Nothing, RegularFile, NotDisabled, false, {}, None, {}, CommandConflict,
     Nothing, RegularFile},
    {"LinkToAnotherProgram", true, Nothing, OtherLink, NotDisabled, false, {}, None, {}, CommandConflict, Nothing,
     OtherLink},
    {"UnreadableStateKeepsThePreviousFile", false, OldFile, Nothing, Unreadable, false, {}, None, {DisabledQuery},
     StateUnavailable, OldFile, Nothing},
    {"FolderAtTheAgentFile", false, Folder, Nothing, NotDisabled, false, {}, None, {}, ReadFailed, Folder, Nothing},
    {"FailingLoadRestoresBytesLinkAndDisabledMark", true, OldFile, Nothing, Disabled, false, {Load}, None, rolledBack,
     StepFailed, OldFile, Nothing},
    {"FailingLoadRemovesTheNewFile", false, Nothing, Nothing, NotDisabled, false, {Load}, None, full, StepFailed,
     Nothing, Nothing},
    {"LinkThatWasAlreadyThereSurvivesTheRollback", true, Nothing, CorrectLink, NotDisabled, false, {Load}, None, full,
     StepFailed, Nothing, CorrectLink},
    {"FailingEnableLeavesTheDisabledMarkAlone", true, Nothing, Nothing, Disabled, false, {Enable}, None,
     {DisabledQuery, LoadedQuery, Enable}, StepFailed, Nothing, Nothing},
    {"RefusedLinkNeitherRemovesALinkNorDisables", true, Nothing, Nothing, Disabled, false, {}, RefuseLink,
     {DisabledQuery, LoadedQuery}, LinkRefused, Nothing, Nothing},
    {"FailedRollbackReportsEveryFailure", false, Nothing, Nothing, Disabled, false, {Load, Disable}, RefuseRemove,
     rolledBack, RollbackFailed, NewFile, Nothing}};
// clang-format on
INSTANTIATE_TEST_SUITE_P(, AgentInstallTest, testing::ValuesIn(installCases), ParamName());

struct UninstallCase
{
    const char *name;
    Place agentFile;
    bool stop;
    bool loaded;
    std::vector<Step> failing;
    std::vector<Step> steps;
    Outcome outcome;
    Place agentFileAfter;
};

using AgentUninstallTest = testing::TestWithParam<UninstallCase>;

TEST_P(AgentUninstallTest, RemovesDisablesAndStopsOnlyWhenAsked)
{
    const UninstallCase &row = GetParam();
    Scene scene(NotDisabled, row.loaded, row.failing);
    const bool installed = row.agentFile == NewFile;
    if (installed) {
        ASSERT_TRUE(scene.controller().install(scene.givenExecutable(), true).ok());
    }
    scene.put(scene.agentFile(), row.agentFile);
    const auto before = static_cast<long>(scene.ran().size());

    const Expected<void> result = scene.controller().uninstall(row.stop);

    EXPECT_EQ(described(result), described(scene.expected(row.outcome)));
    EXPECT_EQ(std::vector(scene.ran().begin() + before, scene.ran().end()), row.steps);
    EXPECT_EQ(scene.at(scene.agentFile()), row.agentFileAfter);
    EXPECT_EQ(scene.at(scene.commandLink()), installed ? CorrectLink : Nothing) << "the command link stays";
}

// Each row: agent file before, stop the running agent?, loaded?, failing commands; then the commands run,
// the outcome and the agent file after.
// clang-format off
const UninstallCase uninstallCases[] = {
    {"NeverUnloadsWithoutBeingAsked", NewFile, false, true, {}, {Disable}, Ok, Nothing},
    {"StopsTheRunningAgentWhenAsked", NewFile, true, true, {}, {Disable, LoadedQuery, Unload}, Ok, Nothing},
    {"FolderAtTheAgentFileConflicts", Folder, false, false, {}, {}, AgentFileConflict, Folder},
    {"FailingDisableStopsNothing", NewFile, true, true, {Disable}, {Disable}, StepFailed, Nothing}};
// clang-format on
INSTANTIATE_TEST_SUITE_P(, AgentUninstallTest, testing::ValuesIn(uninstallCases), ParamName());

TEST(AgentLoginEnabledTest, NeedsTheFileAndNoDisabledMark)
{
    using Row = std::tuple<bool, State, bool>; // installed?, disabled mark; then enabled?
    for (const auto &[installed, state, enabled] : {Row{false, NotDisabled, false}, Row{true, NotDisabled, true},
                                                    Row{true, Disabled, false}, Row{true, Unreadable, false}}) {
        SCOPED_TRACE(testing::Message() << installed << static_cast<int>(state));
        Scene scene(state, false, {});
        scene.put(scene.agentFile(), installed ? OldFile : Nothing);
        EXPECT_EQ(scene.controller().isLoginEnabled(), enabled);
        EXPECT_EQ(scene.ran(), installed ? std::vector{DisabledQuery} : std::vector<Step>{});
    }
}

} // namespace
