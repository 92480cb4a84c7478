#include "FocusHelper.h"

#include "platform/ApplicationRole.h"
#include "platform/ParentProcess.h"

#include <QApplication>
#include <QTimer>

#include <chrono>
#include <cstdlib>

namespace FocusHelper {
namespace {

// Long enough for the selection to settle after activation, short enough to stay unnoticed.
constexpr std::chrono::milliseconds confirmDelay{150};

} // namespace

void run(int &argc, char **argv, const QString &identifier)
{
    // Only the engine that started us wants the switch.
    ParentProcess::endWithParent();
    bool automatic = false;
    for (int i = 1; i < argc; ++i)
        automatic = automatic || qstrcmp(argv[i], "--automatic") == 0;

    ApplicationRole::useOffscreenWithoutDisplay();
    const QApplication application(argc, argv);
    const FocusHelperDependencies dependencies = FocusHelperDependencies::live();

    if (const std::optional<int> status = prepare(identifier, automatic, dependencies))
        std::exit(*status);
    QTimer::singleShot(confirmDelay, [&] { std::exit(confirm(identifier, automatic, dependencies)); });
    QApplication::exec();
    std::exit(Failed);
}

} // namespace FocusHelper
