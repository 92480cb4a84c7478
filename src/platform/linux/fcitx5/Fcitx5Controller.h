#pragma once

#include <QDBusMessage>
#include <QString>
#include <QVariantList>

// Calls to Fcitx5's controller on the session bus. Each waits at most
// callTimeoutMs and never starts Fcitx5 through D-Bus activation.
namespace Fcitx5Controller {

constexpr int callTimeoutMs = 1000;

inline const QString service = QStringLiteral("org.fcitx.Fcitx5");
inline const QString path = QStringLiteral("/controller");
inline const QString interface = QStringLiteral("org.fcitx.Fcitx.Controller1");

QDBusMessage message(const QString &method, const QVariantList &arguments = {});
QDBusMessage call(const QString &method, const QVariantList &arguments = {});
// The reply's first argument as text; empty on any error.
QString text(const QDBusMessage &reply);

} // namespace Fcitx5Controller
