// The checks wired to this machine.
#include "core/config/ConfigStore.h"
#include "core/doctor/DoctorServices.h"
#include "core/instance/InstanceLock.h"
#include "core/sources/Catalog.h"
#include "core/sources/SourcesAvailability.h"
#include "platform/AppPlaces.h"
#include "platform/ServiceManager.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

DoctorServices::LoginEntry readLoginEntry()
{
    const ServiceManager manager = ServiceManager::live();
    DoctorServices::LoginEntry entry{manager.agentFile};
    for (const QString &leftover : manager.leftovers)
        if (QFileInfo::exists(leftover))
            entry.leftovers << leftover;
    QFile file(manager.agentFile);
    if (!file.open(QIODevice::ReadOnly))
        return entry;
    const QString text = QString::fromUtf8(file.read(64 * 1024));
    entry.exists = true;
    entry.program = manager.programOf(text);
    // Without a question for the service manager, the file itself says whether it is off.
    entry.hidden = manager.disabledQuery.isEmpty() && manager.readMark({0, text}) == ServiceManager::Mark::Disabled;
    return entry;
}

bool isRunnable(const QString &program)
{
    const QFileInfo file(program.contains(QLatin1Char('/')) ? program : QStandardPaths::findExecutable(program));
    return file.isFile() && file.isExecutable();
}

} // namespace

DoctorServices DoctorServices::live()
{
    const InputSources system = InputSources::live();
    const SessionFacts session = SessionFacts::live();
    DoctorServices s;
    s.stack = session.stack;
    s.sessionType = session.sessionType;
    s.trayHost = session.trayHost;
    s.inKeyboardMenu = system.inKeyboardMenu;
    s.framework = SourcesAvailability::frameworkName(system.backend);
    s.availability = system.availability;
    s.report = system.report;
    s.following = system.following;
    s.keymapHeld = system.keymapHeld;
    s.choices = [system] { return Catalog::choices(system); };
    s.configFile = [] { return ConfigStore::file(); };
    s.configExists = [] { return QFileInfo::exists(ConfigStore::file()); };
    s.config = [] { return ConfigStore::load(); };
    s.loginEntry = readLoginEntry;
    s.runnable = isRunnable;
    s.instance = [] { return InstanceLock::holder(InstanceLock::fileIn(AppPlaces::sessionLockDirectory())); };
    s.build = AppBuildInfo::current;
    return s;
}
