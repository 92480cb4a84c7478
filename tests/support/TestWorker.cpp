// Drives the configuration store and the notifications from a separate
// process, so the tests can race real processes against each other.
#include "core/config/ConfigStore.h"
#include "core/instance/InstanceLock.h"
#include "platform/Notifications.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <thread>

#include <unistd.h>

namespace {

int mutate(const QString &directory, const QString &mark, int count, const Notifications &notifications)
{
    for (int i = 0; i < count; ++i) {
        const Expected<Config> result = ConfigStore::mutate(
            directory,
            [&](Config &config) -> Expected<void> {
                config.sourceID = config.sourceID.value_or(QString()) + mark;
                return {};
            },
            notifications);
        if (!result) {
            std::fprintf(stderr, "%s\n", qPrintable(result.error().description()));
            return 1;
        }
    }
    return 0;
}

int write(const QString &directory, int count)
{
    // Two records of different sizes, so a torn file could not pass for either.
    const Config small{QStringLiteral("s"), false, std::nullopt, false};
    const Config large{QString(4096, QLatin1Char('L')), true, QStringLiteral("ko"), true};
    for (int i = 0; i < count; ++i) {
        if (!ConfigStore::write(i % 2 ? large : small, directory))
            return 1;
    }
    return 0;
}

int read(const QString &directory, int count)
{
    int failures = 0;
    for (int i = 0; i < count; ++i) {
        if (!ConfigStore::loadFrom(directory))
            ++failures;
    }
    std::printf("%d\n", failures);
    return failures == 0 ? 0 : 1;
}

// With no session bus both calls must come back at once and harmlessly.
int withoutBus()
{
    const Notifications notifications = Notifications::live();
    notifications.post(ConfigStore::changed);
    QObject context;
    const bool observed = notifications.observe(ConfigStore::changed, &context, [] {});
    std::puts(observed ? "observing" : "unavailable");
    return 0;
}

// Stand-ins for a focus helper: exit at once, hang, shrug off SIGTERM, or
// exit with a status of their own when asked to stop.
int child(const QString &behaviour, int value)
{
    if (behaviour == QLatin1String("exit"))
        return value;
    if (behaviour == QLatin1String("ignore-term"))
        std::signal(SIGTERM, SIG_IGN);
    if (behaviour == QLatin1String("term-exits")) {
        static int status = 0;
        status = value;
        std::signal(SIGTERM, [](int) { _exit(status); });
    }
    std::this_thread::sleep_for(std::chrono::seconds(30));
    return 0;
}

// Takes the instance lock and keeps it until its standard input closes, or
// until it is killed.
int holdLock(const QString &path)
{
    InstanceLock lock;
    const Expected<bool> acquired = lock.acquire(path);
    if (!acquired) {
        std::printf("error %s\n", qPrintable(acquired.error().description()));
        return 2;
    }
    std::puts(acquired.value() ? "held" : "busy");
    std::fflush(stdout);
    if (!acquired.value())
        return 1;
    while (std::getchar() != EOF) {
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList args = QCoreApplication::arguments().mid(1);
    const QString mode = args.value(0);
    if (mode == QLatin1String("mutate") && args.size() == 4)
        return mutate(args[1], args[2], args[3].toInt(), Notifications::none());
    if (mode == QLatin1String("mutate-announced") && args.size() == 3)
        return mutate(args[1], args[2], 1, Notifications::live());
    if (mode == QLatin1String("write") && args.size() == 3)
        return write(args[1], args[2].toInt());
    if (mode == QLatin1String("read") && args.size() == 3)
        return read(args[1], args[2].toInt());
    if (mode == QLatin1String("post") && args.size() == 2) {
        Notifications::live().post(args[1]);
        return 0;
    }
    if (mode == QLatin1String("child") && args.size() == 3)
        return child(args[1], args[2].toInt());
    if (mode == QLatin1String("without-bus"))
        return withoutBus();
    if (mode == QLatin1String("hold-lock") && args.size() == 2)
        return holdLock(args[1]);
    std::fprintf(stderr,
                 "usage: tolvar_test_worker mutate|mutate-announced|write|read|post|without-bus|hold-lock ...\n");
    return 64;
}
