#include "core/login/AgentError.h"

#include "core/l10n/L10n.h"

namespace AgentError {

Error executable(const QString &path)
{
    return Error::other(L10n::text("agent.executable").arg(path));
}

Error commandConflict(const QString &path)
{
    return Error::other(L10n::text("agent.command-conflict").arg(path));
}

Error commandFailed(const QString &subcommand, int status)
{
    return Error::other(L10n::text("agent.command-failed").arg(subcommand, QString::number(status)));
}

Error stateUnavailable()
{
    return Error::other(L10n::text("agent.state-unavailable"));
}

Error agentFileConflict(const QString &path)
{
    return Error::other(L10n::text("agent.plist-conflict").arg(path));
}

Error rollback(const Error &cause, const QStringList &failures)
{
    return Error::other(L10n::text("agent.rollback").arg(cause.description(), failures.join(QLatin1String("; "))));
}

} // namespace AgentError
