#pragma once

#include "base/Error.h"

#include <QString>
#include <QStringList>

// The login agent's own failures, each already a sentence in the user's language.
namespace AgentError {

// The file to register cannot be executed.
Error executable(const QString &path);
// Something other than a link to this executable is where the command link goes.
Error commandConflict(const QString &path);
// The service manager's tool ended with a status other than 0.
Error commandFailed(const QString &subcommand, int status);
// The service manager's answer about the disabled mark could not be read.
Error stateUnavailable();
// A folder is where the agent's file goes.
Error agentFileConflict(const QString &path);
// An installation failed and undoing it failed too.
Error rollback(const Error &cause, const QStringList &failures);

} // namespace AgentError
