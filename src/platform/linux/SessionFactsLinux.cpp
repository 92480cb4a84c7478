#include "platform/SessionFacts.h"

#include "platform/linux/dbus/BusProbe.h"
#include "platform/linux/dbus/DBusBuses.h"
#include "platform/linux/ibus/IBusAddress.h"
#include "platform/linux/input/LinuxInputBackend.h"
#include "platform/linux/x11/X11Tray.h"
#include "platform/linux/x11/Xcb.h"

#include <memory>

namespace {

using namespace std::chrono_literals;

// Short: a daemon that does not answer at once is reported by the stack's own check.
constexpr auto ibusKnockLimit = 250ms;

QString variable(const char *name)
{
    const QString value = qEnvironmentVariable(name);
    return QLatin1String(name) + QLatin1Char('=') + (value.isEmpty() ? QStringLiteral("(unset)") : value);
}

SessionFacts::Stack readStack()
{
    const LinuxInputBackend::Session session = LinuxInputBackend::probe();
    SessionFacts::Stack stack{LinuxInputBackend::name(LinuxInputBackend::choose(session)), {}, {}};
    for (const char *name :
         {"TOLVAR_INPUT_BACKEND", "XDG_CURRENT_DESKTOP", "GTK_IM_MODULE", "QT_IM_MODULE", "XMODIFIERS"})
        stack.evidence << variable(name);
    if (!session.busAnswers) {
        stack.evidence << QStringLiteral("session bus: not answering");
        return stack;
    }
    const QString ibus = IBusAddress::published();
    if (!ibus.isEmpty() && BusProbe::knock(ibus, ibusKnockLimit) == BusProbe::Result::Answered)
        stack.running << QStringLiteral("ibus");
    for (const auto &[name, owner] : {std::pair{"fcitx5", "org.fcitx.Fcitx5"}, std::pair{"gnome", "org.gnome.Shell"},
                                      std::pair{"plasma", "org.kde.keyboard"}}) {
        const bool owned = DBusBuses::sessionHas(QLatin1String(owner));
        stack.evidence << QLatin1String(owner) + (owned ? QStringLiteral(": on the bus") : QStringLiteral(": absent"));
        if (owned)
            stack.running << QLatin1String(name);
    }
    stack.evidence << (stack.running.contains(QLatin1String("ibus")) ? QStringLiteral("IBus: answering")
                                                                     : QStringLiteral("IBus: not answering"));
    return stack;
}

QString readSessionType()
{
    const QString type = qEnvironmentVariable("XDG_SESSION_TYPE");
    if (type == QLatin1String("x11") || type == QLatin1String("wayland"))
        return type;
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return QStringLiteral("wayland");
    return qEnvironmentVariableIsEmpty("DISPLAY") ? QString() : QStringLiteral("x11");
}

// Whether the XEmbed tray selection of the default screen has an owner.
std::optional<QString> x11Tray()
{
    const Xcb *x = Xcb::library();
    if (!x || qEnvironmentVariableIsEmpty("DISPLAY"))
        return std::nullopt;
    int screen = 0;
    const std::unique_ptr<xcb_connection_t, decltype(x->disconnect)> connection(x->connect(nullptr, &screen),
                                                                                x->disconnect);
    if (x->connectionHasError(connection.get()))
        return std::nullopt;
    const std::optional<QByteArray> selection = X11Tray::ownedSelection(connection.get(), screen);
    return selection ? std::optional(QString::fromLatin1(*selection)) : std::nullopt;
}

std::optional<QString> findTrayHost()
{
    const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
    if (DBusBuses::sessionHas(watcher))
        return watcher;
    return x11Tray();
}

} // namespace

SessionFacts SessionFacts::live()
{
    return {.stack = readStack, .sessionType = readSessionType, .trayHost = findTrayHost};
}
