#include "platform/linux/input/LinuxInputBackend.h"

#include "platform/linux/dbus/DBusBuses.h"
#include "platform/linux/x11/X11Layout.h"

#include <array>
#include <utility>

namespace {

constexpr std::array names = {
    std::pair{LinuxInputBackend::Kind::ibus, "ibus"},     std::pair{LinuxInputBackend::Kind::gnome, "gnome"},
    std::pair{LinuxInputBackend::Kind::fcitx5, "fcitx5"}, std::pair{LinuxInputBackend::Kind::plasma, "plasma"},
    std::pair{LinuxInputBackend::Kind::x11, "x11"},
};

// What im-config and the desktops export for applications: the framework they
// type through. When it names IBus, that holds whatever else runs, and the bus
// need not be asked. Fcitx 5 goes by "fcitx" there.
bool sessionTypesThrough(const QString &framework)
{
    return qEnvironmentVariable("GTK_IM_MODULE").startsWith(framework)
           || qEnvironmentVariable("QT_IM_MODULE").startsWith(framework)
           || qEnvironmentVariable("XMODIFIERS").contains(QStringLiteral("@im=") + framework);
}

} // namespace

namespace LinuxInputBackend {

std::optional<Kind> parse(const QString &name)
{
    for (const auto &[kind, text] : names)
        if (name == QLatin1String(text))
            return kind;
    return std::nullopt;
}

QString name(Kind kind)
{
    for (const auto &[candidate, text] : names)
        if (candidate == kind)
            return QLatin1String(text);
    return {};
}

Kind choose(const Session &session)
{
    if (const std::optional<Kind> requested = parse(session.requested))
        return *requested;
    if (session.fcitx5Running || (!session.busAnswers && session.typesThroughFcitx))
        return Kind::fcitx5;
    if (session.desktops.contains(QLatin1String("GNOME"), Qt::CaseInsensitive))
        return Kind::gnome;
    if (session.desktops.contains(QLatin1String("KDE"), Qt::CaseInsensitive)) {
        if (session.plasmaLayouts || !session.busAnswers)
            return Kind::plasma;
        // On X11 the keyboard daemon of plasma-desktop served org.kde.keyboard until Plasma 6.8 dropped it.
        if (session.x11Session && !session.typesThroughIBus)
            return Kind::x11;
    }
    return Kind::ibus;
}

Session probe()
{
    Session session;
    session.requested = qEnvironmentVariable("TOLVAR_INPUT_BACKEND");
    session.desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    if (parse(session.requested))
        return session;
    session.busAnswers = DBusBuses::session().has_value();
    session.typesThroughFcitx = sessionTypesThrough(QStringLiteral("fcitx"));
    session.typesThroughIBus = sessionTypesThrough(QStringLiteral("ibus"));
    session.x11Session = X11Layout::isX11Session();
    if (!session.busAnswers)
        return session;
    if (!session.typesThroughIBus)
        session.fcitx5Running = DBusBuses::sessionHas(QStringLiteral("org.fcitx.Fcitx5"));
    if (session.desktops.contains(QLatin1String("KDE"), Qt::CaseInsensitive))
        session.plasmaLayouts = DBusBuses::sessionHas(QStringLiteral("org.kde.keyboard"));
    return session;
}

} // namespace LinuxInputBackend
