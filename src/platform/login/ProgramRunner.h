#pragma once

#include "platform/login/ServiceToolResult.h"

#include <QStringList>

#include <functional>

// Runs a program and waits for it, to ask or tell the service manager something.
using RunProgram = std::function<ServiceToolResult(const QString &program, const QStringList &arguments)>;

namespace ProgramRunner {

// Starts the program without a shell, reads its standard output to the end
// and discards its standard error. A program that cannot start reads as
// status 1; one that dies from a signal never reads as 0. Usable from any thread.
ServiceToolResult run(const QString &program, const QStringList &arguments);

} // namespace ProgramRunner
