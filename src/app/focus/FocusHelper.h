#pragma once

#include "app/focus/FocusHelperDependencies.h"
#include "core/engine/FocusExitStatus.h"

#include <QRect>
#include <QString>

#include <optional>

// The child side of a focus switch: a short-lived process that takes keyboard
// focus with a tiny window, selects the source, and says by its exit status
// how that went.
namespace FocusHelper {

// Runs the whole helper and ends the process; never returns.
[[noreturn]] void run(int &argc, char **argv, const QString &identifier);

// Everything up to activation: an exit status to end with, or absent to go on
// and confirm.
std::optional<FocusExitStatus> prepare(const QString &identifier, bool automatic,
                                       const FocusHelperDependencies &dependencies);
// The check made a moment after activation.
FocusExitStatus confirm(const QString &identifier, bool automatic, const FocusHelperDependencies &dependencies);

// 3 x 3, 8 in from the lower right corner of the usable area.
QRect windowGeometry(const QRect &screenArea);

} // namespace FocusHelper
