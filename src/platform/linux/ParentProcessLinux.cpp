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
    // - systemd: the user manager adopts applications that desktops launch into
    //   their own scopes, and runs XDG autostart entries;
    // - gnome-shell, plasmashell, krunner, xfce4-panel, xfdesktop: the shells' own
    //   launchers and docks;
    // - gio, gtk-launch, kioclient: what xdg-open and file managers hand off to.
    // xdg-open itself is a script, so it shows up as its shell and cannot be named.
    return {
        QStringLiteral("systemd"),    QStringLiteral("gnome-shell"), QStringLiteral("plasmashell"),
        QStringLiteral("krunner"),    QStringLiteral("xfce4-panel"), QStringLiteral("xfdesktop"),
        QStringLiteral("gio"),        QStringLiteral("gtk-launch"),  QStringLiteral("kioclient"),
        QStringLiteral("kioclient5"), QStringLiteral("kioclient6"),
    };
}

} // namespace ParentProcess
