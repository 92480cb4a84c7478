#include "app/focus/FocusHelper.h"

namespace FocusHelper {
namespace {

constexpr int windowSize = 3;
constexpr int cornerInset = 8;

// The switch is still wanted only while this identifier is pinned and, for an
// automatic run, keeping is on.
bool wanted(const QString &identifier, bool automatic, const FocusHelperDependencies &dependencies)
{
    const std::optional<Config> config = dependencies.readConfig();
    if (!config || config->sourceID != identifier)
        return false;
    return !automatic || config->enabled;
}

} // namespace

QRect windowGeometry(const QRect &screenArea)
{
    const int x = screenArea.x() + screenArea.width() - windowSize - cornerInset;
    const int y = screenArea.y() + screenArea.height() - windowSize - cornerInset;
    return {x, y, windowSize, windowSize};
}

std::optional<FocusExitStatus> prepare(const QString &identifier, bool automatic,
                                       const FocusHelperDependencies &dependencies)
{
    if (!wanted(identifier, automatic, dependencies))
        return FocusExitStatus::NotWanted;
    if (dependencies.secureInput())
        return FocusExitStatus::SecureInput;
    if (!dependencies.isSelectable(identifier))
        return FocusExitStatus::Missing;
    dependencies.becomeAccessory();
    const std::optional<QRect> screen = dependencies.mainScreenArea();
    if (!screen)
        return FocusExitStatus::Failed;
    // The world may have moved on while we started; look again before each step that shows.
    if (!wanted(identifier, automatic, dependencies))
        return FocusExitStatus::NotWanted;
    if (dependencies.secureInput())
        return FocusExitStatus::SecureInput;
    if (dependencies.select(identifier) != 0)
        return FocusExitStatus::Failed;
    dependencies.createWindow(windowGeometry(*screen));
    if (dependencies.secureInput())
        return FocusExitStatus::SecureInput;
    if (!wanted(identifier, automatic, dependencies))
        return FocusExitStatus::NotWanted;
    dependencies.activateWindow();
    return std::nullopt;
}

FocusExitStatus confirm(const QString &identifier, bool automatic, const FocusHelperDependencies &dependencies)
{
    if (!wanted(identifier, automatic, dependencies))
        return FocusExitStatus::NotWanted;
    return dependencies.currentID() == identifier ? FocusExitStatus::Switched : FocusExitStatus::Failed;
}

} // namespace FocusHelper
