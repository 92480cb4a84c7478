#include "core/cli/CLI.h"

#include <QFile>

#include <cstdio>

int CLI::main(const QStringList &arguments)
{
    QFile out;
    QFile err;
    out.open(stdout, QIODevice::WriteOnly | QIODevice::Unbuffered);
    err.open(stderr, QIODevice::WriteOnly | QIODevice::Unbuffered);
    return CLI(CLIServices::live(), out, err).run(arguments);
}
