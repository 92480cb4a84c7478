#pragma once

#include <QString>

// Tolvar's own Fcitx5 addon (fcitx5-addon/) on the session bus. Fcitx5 holds
// the name only while the addon is loaded, and the addon signals every change
// of the current input method, so that nothing has to poll.
namespace Fcitx5Addon {

inline const QString service = QStringLiteral("app.tolvar.Fcitx5");
inline const QString path = QStringLiteral("/app/tolvar/Fcitx5");
inline const QString interface = QStringLiteral("app.tolvar.Fcitx5Watch1");

// Whether the addon is on the bus now.
bool present();

} // namespace Fcitx5Addon
