#include "platform/linux/input/LinuxInputBackend.h"

#include "platform/linux/dbus/DBusBuses.h"

#include <array>
#include <utility>

namespace {

constexpr std::array names = {
    std::pair{LinuxInputBackend::Kind::ibus, "ibus"},
    std::pair{LinuxInputBackend::Kind::gnome, "gnome"},
    std::pair{LinuxInputBackend::Kind::fcitx5, "fcitx5"},
    std::pair{LinuxInputBackend::Kind::plasma, "plasma"},
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
    if (session.desktops.contains(QLatin1String("KDE"), Qt::CaseInsensitive)
        && (session.plasmaLayouts || !session.busAnswers))
        return Kind::plasma;
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
    if (!session.busAnswers)
        return session;
    if (!sessionTypesThrough(QStringLiteral("ibus")))
        session.fcitx5Running = DBusBuses::sessionHas(QStringLiteral("org.fcitx.Fcitx5"));
    if (session.desktops.contains(QLatin1String("KDE"), Qt::CaseInsensitive))
        session.plasmaLayouts = DBusBuses::sessionHas(QStringLiteral("org.kde.keyboard"));
    return session;
}

} // namespace LinuxInputBackend
