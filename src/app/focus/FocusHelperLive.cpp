#include "app/focus/FocusHelperDependencies.h"

#include "core/config/ConfigStore.h"
#include "core/sources/Catalog.h"
#include "platform/ApplicationRole.h"
#include "platform/input/InputSources.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <memory>

FocusHelperDependencies FocusHelperDependencies::live()
{
    const InputSources system = InputSources::live();
    // The helper's one window, kept for the rest of its short life.
    auto window = std::make_shared<std::unique_ptr<QWidget>>();

    FocusHelperDependencies d;
    d.readConfig = []() -> std::optional<Config> {
        const Expected<Config> config = ConfigStore::load();
        return config ? std::optional(config.value()) : std::nullopt;
    };
    d.secureInput = system.secureInput;
    d.isSelectable = [system](const QString &id) { return Catalog::find(id, system).has_value(); };
    // Another process's switch may be under way; the framework takes ours a moment later.
    d.select = [system](const QString &id) { return InputSources::selectPatiently(system, id, 20); };
    d.currentID = system.currentID;
    d.becomeAccessory = [] { ApplicationRole::becomeAccessory(); };
    d.mainScreenArea = []() -> std::optional<QRect> {
        const QScreen *screen = QGuiApplication::primaryScreen();
        return screen ? std::optional(screen->availableGeometry()) : std::nullopt;
    };
    d.createWindow = [window](const QRect &geometry) {
        *window = std::make_unique<QWidget>(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        (*window)->setGeometry(geometry);
    };
    d.activateWindow = [window] {
        QWidget *widget = window->get();
        widget->show();
        ApplicationRole::raiseAboveEverything(widget->winId());
        widget->raise();
        widget->activateWindow();
        ApplicationRole::activateIgnoringOtherApps();
    };
    return d;
}
