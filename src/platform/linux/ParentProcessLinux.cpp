#include "platform/ParentProcess.h"

#include <QFile>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace ParentProcess {

QString executablePath()
{
    return QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(::getppid()));
}

void endWithParent()
{
    const pid_t parent = ::getppid();
    // SIGKILL, since a stopped process would hold any other signal until continued.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent)
        ::_exit(1);
}

QStringList desktopLaunchers()
{
    // Who starts a program with no arguments when a person opens it:
    // - systemd: the user manager runs XDG autostart entries, and Plasma's and
    //   GNOME's launchers may start applications as transient units of it;
    // - the shells' own launchers, docks and runners: gnome-shell, plasmashell,
    //   krunner, xfce4-panel, xfce4-appfinder, xfdesktop, cinnamon, mate-panel,
    //   lxqt-panel, lxqt-runner, budgie-panel;
    // - what xdg-open and file managers hand off to: gio, gtk-launch,
    //   kioclient, kstart, and the file managers that start entries themselves.
    // xdg-open itself is a script, so it shows up as its shell and cannot be named.
    return {
        QStringLiteral("systemd"),    QStringLiteral("gnome-shell"), QStringLiteral("plasmashell"),
        QStringLiteral("krunner"),    QStringLiteral("xfce4-panel"), QStringLiteral("xfce4-appfinder"),
        QStringLiteral("xfdesktop"),  QStringLiteral("cinnamon"),    QStringLiteral("mate-panel"),
        QStringLiteral("lxqt-panel"), QStringLiteral("lxqt-runner"), QStringLiteral("budgie-panel"),
        QStringLiteral("gio"),        QStringLiteral("gtk-launch"),  QStringLiteral("kioclient"),
        QStringLiteral("kioclient5"), QStringLiteral("kioclient6"),  QStringLiteral("kstart"),
        QStringLiteral("kstart5"),    QStringLiteral("nautilus"),    QStringLiteral("dolphin"),
        QStringLiteral("thunar"),     QStringLiteral("nemo"),        QStringLiteral("caja"),
        QStringLiteral("pcmanfm-qt"),
    };
}

} // namespace ParentProcess
