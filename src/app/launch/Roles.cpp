#include "app/launch/Roles.h"

#include "app/focus/FocusHelper.h"
#include "app/instance/AppController.h"
#include "app/model/AppModel.h"
#include "core/l10n/L10n.h"
#include "platform/ApplicationRole.h"
#include "platform/files/StandardStreams.h"

#include <QApplication>
#include <QIcon>

#include <cstdio>

int runGraphicalInstance(int &argc, char **argv, bool openWindowOnLaunch)
{
    // Without a display the instance still keeps the source; only a window has nowhere to go.
    const bool headless = ApplicationRole::useOffscreenWithoutDisplay();
    ApplicationRole::avoidSilentSessionBus();
    const QApplication application(argc, argv);
    if (headless && openWindowOnLaunch) {
        std::fprintf(stderr, "tolvar: %s\n", qPrintable(L10n::text("app.no-display")));
        return 1;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    // Ties the windows to the launcher entry, for the taskbar's icon and name.
    QGuiApplication::setDesktopFileName(QStringLiteral("app.tolvar"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/app/tolvar.svg")));
    AppController controller(AppModel::shared(), AppController::Dependencies::live());
    switch (controller.launch(openWindowOnLaunch)) {
    case AppController::Launch::Running: return QApplication::exec();
    // A second launch has asked the first to show itself. Started by hand, it
    // says so; a launcher shows nothing anyway.
    case AppController::Launch::HandedOver:
        if (StandardStreams::outputIsTerminal())
            std::puts(qPrintable(L10n::text("cli.msg.handed-over")));
        return 0;
    case AppController::Launch::LockFailed: return 1;
    }
    return 1;
}

int runFocusHelper(int &argc, char **argv, const QString &identifier)
{
    FocusHelper::run(argc, argv, identifier);
}
