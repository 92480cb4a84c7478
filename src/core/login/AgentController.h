#pragma once

#include "base/Expected.h"
#include "platform/ServiceManager.h"
#include "platform/files/FileOperations.h"
#include "platform/login/ProgramRunner.h"

#include <QByteArray>
#include <QString>

#include <optional>

// Installs and removes the login item: the service manager's agent that
// starts this executable with "background" at login, and optionally the
// command link ~/.local/bin/tolvar. An installation that fails half way
// undoes its own changes. A plain value without state of its own: every
// question asks the service manager afresh, so it may run on any thread.
class AgentController
{
public:
    AgentController(QString homeDirectory, ServiceManager manager, FileOperations files, RunProgram run);
    // The current user's home, this platform's service manager, the real files and programs.
    static AgentController live();

    Expected<void> install(const QString &executable, bool installCommand) const;
    // Removes the agent's file and marks the agent disabled; stops the running
    // agent only when asked, since the caller may be that agent.
    Expected<void> uninstall(bool stopRunningAgent) const;
    bool isLoaded() const;
    // The agent's file exists and the service manager does not mark it
    // disabled. Any error reads as false.
    bool isLoginEnabled() const;

    const QString &agentFile() const { return m_manager.agentFile; }
    QString commandLink() const;

private:
    // What a failed installation must put back.
    struct Undo
    {
        QString executable;
        std::optional<QByteArray> previousContent;
        bool removeLink = false;
        bool disableAgain = false;
    };

    Expected<bool> isDisabled() const;
    // Whether the command link must still be made; an error when something else is there.
    Expected<bool> needsCommand(const QString &executable) const;
    // Removes the command link if it leads to the executable.
    Expected<void> removeCreatedCommand(const QString &executable) const;
    // Succeeds at once for a step the service manager does not have.
    Expected<void> requireSuccess(const QStringList &arguments) const;
    // The agent's file as the answer to the disabled question, for a manager without one.
    ServiceToolResult agentFileText() const;
    Expected<void> removeLeftovers() const;
    // The error to report for a failed step, after undoing what was done.
    Error rollBack(const Error &cause, const Undo &undo) const;

    QString m_homeDirectory;
    ServiceManager m_manager;
    FileOperations m_files;
    RunProgram m_run;
};
