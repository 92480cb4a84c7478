#pragma once

#include "core/cli/AutomationFailure.h"
#include "core/cli/AutomationStatus.h"
#include "core/cli/CLIRequest.h"
#include "core/cli/CLIServices.h"

#include <QStringList>

class QIODevice;

// The command-line client: one command, then exactly one report (a JSON
// document with --json, else text) and exit status 0 or 1.
class CLI
{
public:
    CLI(CLIServices services, QIODevice &out, QIODevice &err);

    // `arguments` excludes the program path. Returns the exit status.
    int run(const QStringList &arguments);

    // The usage text, one line per command, without a final line break.
    static QString usage();
    // The live client on standard output and error; returns the exit status.
    // `started` is config.json as the process read it on starting.
    static int main(const QStringList &arguments, std::optional<Expected<Config>> started = std::nullopt);

private:
    int parseAndExecute(const QStringList &arguments);
    int execute(const CLIRequest &request);
    int reportStatus(const CLIRequest &request, const std::optional<AutomationStatus> &given = std::nullopt);
    int list(const CLIRequest &request);
    int version(const CLIRequest &request);
    int doctor(const CLIRequest &request);
    int apply(const CLIRequest &request);
    int install(const CLIRequest &request);
    int uninstall(const CLIRequest &request);
    int runOnce(const CLIRequest &request);
    // Checks and writes the pin for set and install.
    Expected<void, AutomationFailure> writePin(const CLIRequest &request);

    int fail(const AutomationFailure &failure, const CLIRequest &request, const std::optional<QString> &human = {});
    int fail(const AutomationFailure &failure, const QString &command, bool json,
             const std::optional<QString> &human = {});
    void printDocument(const QByteArray &document);
    void printStatus(const AutomationStatus &status);
    void line(QIODevice &device, const QString &text);
    void write(QIODevice &device, const QByteArray &bytes);

    CLIServices m_services;
    QIODevice &m_out;
    QIODevice &m_err;
    bool m_writeFailed = false;
};
