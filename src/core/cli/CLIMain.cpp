#include "core/cli/CLI.h"

#include "core/l10n/L10n.h"
#include "platform/files/StandardStreams.h"

#include <QBuffer>
#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>

int CLI::main(const QStringList &arguments, std::optional<Expected<Config>> started)
{
    QFile out;
    QFile err;
    const bool outOpen = out.open(fileno(stdout), QIODevice::WriteOnly | QIODevice::Unbuffered);
    const bool errOpen = err.open(fileno(stderr), QIODevice::WriteOnly | QIODevice::Unbuffered);
    // A closed stream, or one that cannot be opened, is kept in memory:
    // anything written to it is output lost.
    QBuffer lostOut;
    QBuffer lostErr;
    lostOut.open(QIODevice::WriteOnly);
    lostErr.open(QIODevice::WriteOnly);
    QIODevice &output = StandardStreams::outputWasClosed() || !outOpen ? static_cast<QIODevice &>(lostOut) : out;
    QIODevice &error = StandardStreams::errorWasClosed() || !errOpen ? static_cast<QIODevice &>(lostErr) : err;

    const int status = CLI(CLIServices::live(std::move(started)), output, error).run(arguments);
    if (!lostOut.data().isEmpty()) {
        error.write(L10n::text("cli.err.output").arg(QString::fromLocal8Bit(std::strerror(EBADF))).toUtf8() + '\n');
        return 1;
    }
    return status;
}
