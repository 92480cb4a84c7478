// How soon a keeper brings the pinned source back on GNOME Shell (through
// Tolvar's extension) or KWin, timed from outside on the session bus; and the
// least a keeper can do there, as the yardstick. Run by bench/stacks-session.
//   tolvar_stack_reaction_bench keeper gnome|plasma
//   tolvar_stack_reaction_bench measure gnome|plasma ROUNDS
// A round switches away and times from the desktop's own signal of that switch
// to its signal of the pinned source: both keepers hear the first as soon as
// this program does.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <vector>

namespace {

// One desktop's names; a source is a string on GNOME and an index on KWin.
struct Desktop
{
    QString service;
    QString path;
    QString interface;
    QString changed;
    QString select;
    QVariant pinned;
    QVariant away;

    static std::optional<Desktop> named(const QString &name)
    {
        if (name == QLatin1String("gnome"))
            return Desktop{QStringLiteral("app.tolvar.InputSources"),
                           QStringLiteral("/app/tolvar/InputSources"),
                           QStringLiteral("app.tolvar.InputSources1"),
                           QStringLiteral("CurrentChanged"),
                           QStringLiteral("Activate"),
                           QStringLiteral("xkb:de"),
                           QStringLiteral("xkb:us")};
        if (name == QLatin1String("plasma"))
            return Desktop{QStringLiteral("org.kde.keyboard"),
                           QStringLiteral("/Layouts"),
                           QStringLiteral("org.kde.KeyboardLayouts"),
                           QStringLiteral("layoutChanged"),
                           QStringLiteral("setLayout"),
                           QVariant::fromValue(1U),
                           QVariant::fromValue(0U)};
        return std::nullopt;
    }

    QDBusMessage switchTo(const QVariant &source) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, select);
        message.setArguments({source});
        return message;
    }
};

// Hears the desktop's change signal and hands each value on.
class Listener : public QObject
{
    Q_OBJECT
public:
    Listener(const Desktop &desktop, std::function<void(const QVariant &)> heard)
        : m_heard(std::move(heard))
    {
        QDBusConnection::sessionBus().connect(desktop.service, desktop.path, desktop.interface, desktop.changed, this,
                                              SLOT(changed(QDBusMessage)));
    }

public slots:
    void changed(const QDBusMessage &signal) { m_heard(signal.arguments().value(0)); }

private:
    std::function<void(const QVariant &)> m_heard;
};

// The least a keeper can do: on each signal naming another source, one switch
// back, not waiting for its answer.
int keep(const Desktop &desktop)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    Listener listener(desktop, [&](const QVariant &source) {
        if (source != desktop.pinned)
            bus.asyncCall(desktop.switchTo(desktop.pinned));
    });
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

double percentile(std::vector<double> values, double share)
{
    std::sort(values.begin(), values.end());
    return values.at(std::min(values.size() - 1, static_cast<size_t>(share * static_cast<double>(values.size()))));
}

int measure(const Desktop &desktop, int rounds)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    QElapsedTimer clock;
    std::optional<qint64> awaySince;
    QEventLoop *waiting = nullptr;
    std::vector<double> times;
    Listener listener(desktop, [&](const QVariant &source) {
        if (source != desktop.pinned) {
            awaySince = clock.nsecsElapsed();
        } else if (awaySince && waiting) {
            times.push_back(static_cast<double>(clock.nsecsElapsed() - *awaySince) / 1e6);
            waiting->quit();
        }
    });
    clock.start();
    int timedOut = 0;
    for (int round = 0; round < rounds; ++round) {
        QEventLoop loop;
        // Rest between rounds, so that no round meets the last one's work.
        QTimer::singleShot(150, &loop, &QEventLoop::quit);
        loop.exec();
        awaySince.reset();
        waiting = &loop;
        QTimer::singleShot(2000, &loop, [&] {
            ++timedOut;
            loop.quit();
        });
        bus.asyncCall(desktop.switchTo(desktop.away));
        loop.exec();
        waiting = nullptr;
    }
    if (times.empty()) {
        std::fprintf(stderr, "no round came back\n");
        return 1;
    }
    std::printf("%zu %d %.2f %.2f\n", times.size(), timedOut, percentile(times, 0.5), percentile(times, 0.95));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const std::optional<Desktop> desktop = Desktop::named(arguments.value(2));
    if (!desktop || (arguments.value(1) != QLatin1String("keeper") && arguments.value(1) != QLatin1String("measure"))) {
        std::fprintf(stderr, "usage: %s keeper|measure gnome|plasma [ROUNDS]\n", argv[0]);
        return 2;
    }
    if (arguments.value(1) == QLatin1String("keeper"))
        return keep(*desktop);
    return measure(*desktop, std::max(1, arguments.value(3).toInt()));
}

#include "StackReaction.moc"
