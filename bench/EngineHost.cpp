// The engine alone, on live wiring, for the latency benchmark:
// keeps the pinned source until it is killed. Started with "focus", it is
// the focus helper instead, as the real program would be, and notes each run
// in HOME/focus-helper-runs.
#include "app/launch/Entry.h"
#include "core/engine/Enforcer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <cstring>

int main(int argc, char **argv)
{
    if (argc > 1 && std::strcmp(argv[1], "focus") == 0) {
        // Counted, so that tests can tell which path the engine took.
        if (QFile runs(QDir::home().filePath(QStringLiteral("focus-helper-runs"))); runs.open(QIODevice::Append))
            runs.write("run\n");
        return Entry::main(argc, argv);
    }

    const QCoreApplication application(argc, argv);
    Enforcer &enforcer = Enforcer::shared();
    enforcer.start();
    enforcer.enforce(SwitchOrigin::Automatic);
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
