#include "app/focus/FocusHelper.h"

#include "platform/AppPlaces.h"
#include "platform/ApplicationRole.h"
#include "platform/ParentProcess.h"
#include "platform/files/FileOperations.h"
#include "platform/files/LockFile.h"

#include <QApplication>
#include <QDir>
#include <QTimer>

#include <chrono>
#include <cstdlib>
#include <optional>

namespace FocusHelper {
namespace {

// Long enough for the selection to settle after activation, short enough to stay unnoticed.
constexpr std::chrono::milliseconds confirmDelay{150};

// Two helpers at once take focus from each other: the command line's and the
// running instance's start a moment apart when both follow a new pin. The
// later one waits here for the earlier one to end, then switches undisturbed.
// Held until the process ends; when the lock cannot be had, the helper goes on
// alone, as it did before there were rivals.
std::optional<LockFile> takeTurn()
{
    const QString directory = AppPlaces::sessionLockDirectory();
    if (!FileOperations::live().makeDirectories(directory))
        return std::nullopt;
    Expected<LockFile> lock =
        LockFile::open(QDir(directory).filePath(QStringLiteral("focus.lock")), LockFile::Access::ReadWriteCreate);
    if (!lock || !lock.value().lockExclusive())
        return std::nullopt;
    return std::move(lock).value();
}

} // namespace

void run(int &argc, char **argv, const QString &identifier)
{
    // Only the engine that started us wants the switch.
    ParentProcess::endWithParent();
    bool automatic = false;
    for (int i = 1; i < argc; ++i)
        automatic = automatic || qstrcmp(argv[i], "--automatic") == 0;

    // Held, never read: the lock is this helper's turn until the process ends.
    const std::optional<LockFile> turn = takeTurn(); // NOLINT(clang-analyzer-deadcode.DeadStores)
    ApplicationRole::useOffscreenWithoutDisplay();
    const QApplication application(argc, argv);
    const FocusHelperDependencies dependencies = FocusHelperDependencies::live();

    if (const std::optional<FocusExitStatus> status = prepare(identifier, automatic, dependencies))
        std::exit(static_cast<int>(*status));
    QTimer::singleShot(confirmDelay,
                       [&] { std::exit(static_cast<int>(confirm(identifier, automatic, dependencies))); });
    QApplication::exec();
    std::exit(static_cast<int>(FocusExitStatus::Failed));
}

} // namespace FocusHelper
