#include "core/login/AgentController.h"

#include "core/login/AgentError.h"

#include <QDir>
#include <QFileInfo>

namespace {

// The verb of a command line: its first word that is not an option.
QString subcommandOf(const QStringList &arguments)
{
    for (const QString &argument : arguments) {
        if (!argument.startsWith(QLatin1Char('-')))
            return argument;
    }
    return {};
}

QString folderOf(const QString &path)
{
    return QFileInfo(path).absolutePath();
}

} // namespace

AgentController::AgentController(QString homeDirectory, ServiceManager manager, FileOperations files, RunProgram run)
    : m_homeDirectory(std::move(homeDirectory))
    , m_manager(std::move(manager))
    , m_files(std::move(files))
    , m_run(std::move(run))
{}

AgentController AgentController::live()
{
    return AgentController(QDir::homePath(), ServiceManager::live(), FileOperations::live(), ProgramRunner::run);
}

QString AgentController::commandLink() const
{
    return QDir(m_homeDirectory).filePath(QStringLiteral(".local/bin/tolvar"));
}

Expected<void> AgentController::install(const QString &executable, bool installCommand) const
{
    // Nothing is changed until the agent's file is written.
    const QString resolved = m_files.resolve(executable);
    if (!m_files.isExecutableFile(resolved))
        return AgentError::executable(resolved);

    Undo undo;
    undo.executable = resolved;
    if (m_files.exists(agentFile())) {
        const Expected<QByteArray> previous = m_files.read(agentFile());
        if (!previous)
            return previous.error();
        undo.previousContent = previous.value();
    }
    bool linkNeeded = false;
    if (installCommand) {
        const Expected<bool> needed = needsCommand(resolved);
        if (!needed)
            return needed.error();
        linkNeeded = needed.value();
    }
    const Expected<bool> wasDisabled = isDisabled();
    if (!wasDisabled)
        return wasDisabled.error();
    const bool wasLoaded = isLoaded();

    const QByteArray content = m_manager.agentContent(resolved);
    if (const Expected<void> made = m_files.makeDirectories(folderOf(agentFile())); !made)
        return made.error();
    if (const Expected<void> written = m_files.writeAtomically(agentFile(), content); !written)
        return written.error();

    if (linkNeeded) {
        Expected<void> linked = m_files.makeDirectories(folderOf(commandLink()));
        if (linked)
            linked = m_files.createLink(commandLink(), resolved);
        if (!linked)
            return rollBack(linked.error(), undo);
        undo.removeLink = true;
    }
    if (const Expected<void> enabled = requireSuccess(m_manager.enable); !enabled)
        return rollBack(enabled.error(), undo);
    undo.disableAgain = wasDisabled.value();
    // A loaded agent is left as it runs.
    if (!wasLoaded) {
        if (const Expected<void> loaded = requireSuccess(m_manager.load); !loaded)
            return rollBack(loaded.error(), undo);
    }
    if (const Expected<void> removed = removeLeftovers(); !removed)
        return rollBack(removed.error(), undo);
    return {};
}

Expected<void> AgentController::removeLeftovers() const
{
    for (const QString &path : m_manager.leftovers) {
        // A link whose destination is gone still counts.
        if (!m_files.readLink(path) && !m_files.exists(path))
            continue;
        if (const Expected<void> removed = m_files.remove(path); !removed)
            return removed.error();
    }
    return {};
}

Error AgentController::rollBack(const Error &cause, const Undo &undo) const
{
    // Every step is tried, whatever happened to the one before.
    QStringList failures;
    const Expected<void> restored = undo.previousContent ? m_files.writeAtomically(agentFile(), *undo.previousContent)
                                                         : m_files.remove(agentFile());
    if (!restored)
        failures << restored.error().description();
    if (undo.removeLink) {
        if (const Expected<void> removed = removeCreatedCommand(undo.executable); !removed)
            failures << removed.error().description();
    }
    if (undo.disableAgain) {
        if (const Expected<void> disabled = requireSuccess(m_manager.disable); !disabled)
            failures << disabled.error().description();
    }
    return failures.isEmpty() ? cause : AgentError::rollback(cause, failures);
}

Expected<void> AgentController::uninstall(bool stopRunningAgent) const
{
    if (m_files.exists(agentFile())) {
        const Expected<bool> folder = m_files.isDirectory(agentFile());
        if (!folder)
            return folder.error();
        if (folder.value())
            return AgentError::agentFileConflict(agentFile());
        if (const Expected<void> removed = m_files.remove(agentFile()); !removed)
            return removed.error();
    }
    if (const Expected<void> removed = removeLeftovers(); !removed)
        return removed.error();
    if (const Expected<void> disabled = requireSuccess(m_manager.disable); !disabled)
        return disabled.error();
    if (stopRunningAgent && isLoaded())
        return requireSuccess(m_manager.unload);
    return {};
}

bool AgentController::isLoaded() const
{
    return !m_manager.loadedQuery.isEmpty() && m_run(m_manager.program, m_manager.loadedQuery).status == 0;
}

bool AgentController::isLoginEnabled() const
{
    if (!m_files.exists(agentFile()))
        return false;
    const Expected<bool> disabled = isDisabled();
    return disabled && !disabled.value();
}

Expected<bool> AgentController::isDisabled() const
{
    const ServiceToolResult answer =
        m_manager.disabledQuery.isEmpty() ? agentFileText() : m_run(m_manager.program, m_manager.disabledQuery);
    switch (m_manager.readMark(answer)) {
    case ServiceManager::Mark::NotDisabled: return false;
    case ServiceManager::Mark::Disabled: return true;
    case ServiceManager::Mark::Unreadable: return AgentError::stateUnavailable();
    case ServiceManager::Mark::QueryFailed: break;
    }
    return AgentError::commandFailed(subcommandOf(m_manager.disabledQuery), answer.status);
}

Expected<bool> AgentController::needsCommand(const QString &executable) const
{
    const std::optional<QString> destination = m_files.readLink(commandLink());
    if (!destination) {
        if (m_files.exists(commandLink()))
            return AgentError::commandConflict(commandLink());
        return true;
    }
    const QString target = m_files.resolve(QDir(folderOf(commandLink())).absoluteFilePath(*destination));
    if (target == executable)
        return false;
    return AgentError::commandConflict(commandLink());
}

Expected<void> AgentController::removeCreatedCommand(const QString &executable) const
{
    const std::optional<QString> destination = m_files.readLink(commandLink());
    if (!destination) {
        if (m_files.exists(commandLink()))
            return AgentError::commandConflict(commandLink());
        return {};
    }
    if (*destination != executable)
        return AgentError::commandConflict(commandLink());
    return m_files.remove(commandLink());
}

ServiceToolResult AgentController::agentFileText() const
{
    if (!m_files.exists(agentFile()))
        return {1, {}};
    const Expected<QByteArray> bytes = m_files.read(agentFile());
    return bytes ? ServiceToolResult{0, QString::fromUtf8(bytes.value())} : ServiceToolResult{1, {}};
}

Expected<void> AgentController::requireSuccess(const QStringList &arguments) const
{
    if (arguments.isEmpty())
        return {};
    const ServiceToolResult result = m_run(m_manager.program, arguments);
    if (result.status != 0)
        return AgentError::commandFailed(subcommandOf(arguments), result.status);
    return {};
}
