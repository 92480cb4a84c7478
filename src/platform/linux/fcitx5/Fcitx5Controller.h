#pragma once

#include <QDBusArgument>
#include <QDBusMessage>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <functional>

class QObject;

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
// The reply's argument at `index` when it has `signature`; else an empty one.
QDBusArgument argument(const QDBusMessage &reply, qsizetype index, const char *signature);
// The unique names of a group's items, in the group's order, from
// InputMethodGroupInfo's reply; empty on any error.
QStringList groupItems(const QDBusMessage &groupInfo);
// Answers through the event loop, on `context`'s thread, and never blocks it.
// False when there is no session bus to ask.
bool callLater(const QString &method, const QVariantList &arguments, QObject *context,
               std::function<void(const QDBusMessage &reply)> answered);

} // namespace Fcitx5Controller
