#pragma once

#include "support/DesktopSession.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QStandardPaths>

// One (key, value) of the client's description of itself, a(ss) on the bus.
struct Fcitx5ClientInfo
{
    QString key;
    QString value;
};

inline QDBusArgument &operator<<(QDBusArgument &argument, const Fcitx5ClientInfo &info)
{
    argument.beginStructure();
    argument << info.key << info.value;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument &operator>>(const QDBusArgument &argument, Fcitx5ClientInfo &info)
{
    argument.beginStructure();
    argument >> info.key >> info.value;
    argument.endStructure();
    return argument;
}

Q_DECLARE_METATYPE(Fcitx5ClientInfo)

// The private session's own fcitx5, with one group "Default" of the given
// input methods, and one focused input context held by this process, as a
// focused application would hold it: without one Fcitx5 has no current method.
class Fcitx5Session : public DesktopSession
{
public:
    static bool installed() { return !QStandardPaths::findExecutable(QStringLiteral("fcitx5")).isEmpty(); }
    static bool running() { return onBus(QStringLiteral("org.fcitx.Fcitx5")); }

    // With a build tree, Fcitx5 also loads Tolvar's addon from there.
    bool start(const QStringList &items, const QByteArray &addonBuild = {})
    {
        // FCITX_ADDON_DIRS replaces Fcitx5's own folder rather than adding to it.
        const QByteArray addons = TOLVAR_FCITX5_ADDONS;
        qputenv("FCITX_ADDON_DIRS", addonBuild.isEmpty() ? addons : addonBuild + "/lib/fcitx5:" + addons);
        qputenv("XDG_DATA_DIRS",
                (addonBuild.isEmpty() ? QByteArray() : addonBuild + "/share:") + "/usr/local/share:/usr/share");
        QByteArray text = "[Groups/0]\nName=Default\nDefault Layout=us\nDefaultIM=" + items.value(1).toUtf8() + "\n";
        for (qsizetype i = 0; i < items.size(); ++i)
            text += QStringLiteral("[Groups/0/Items/%1]\nName=%2\nLayout=\n").arg(i).arg(items[i]).toUtf8();
        return writeFile(qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/fcitx5/profile"),
                         text + "[GroupOrder]\n0=Default\n")
               && DesktopSession::start(QStringLiteral("fcitx5"),
                                        {QStringLiteral("-D"), QStringLiteral("--disable=all"),
                                         QStringLiteral("--enable=dbus,dbusfrontend,keyboard,hangul,tolvar")},
                                        running, 10000)
               && focusContext();
    }

    void stop()
    {
        DesktopSession::stop();
        spinUntil([] { return !running(); }, 5000);
    }

    static QDBusMessage controller(const QString &method, const QVariantList &arguments = {})
    {
        return call(QStringLiteral("org.fcitx.Fcitx5"), QStringLiteral("/controller"),
                    QStringLiteral("org.fcitx.Fcitx.Controller1"), method, arguments);
    }

    // Another program switching, as Fcitx5's own hotkeys and indicator do.
    static void switchTo(const QString &name) { controller(QStringLiteral("SetCurrentIM"), {name}); }
    // The default group edited, as Fcitx5's own configuration tool does.
    static void setGroup(const QStringList &names)
    {
        QList<Fcitx5ClientInfo> items;
        for (const QString &name : names)
            items << Fcitx5ClientInfo{name, QString()};
        controller(QStringLiteral("SetInputMethodGroupInfo"),
                   {QStringLiteral("Default"), QStringLiteral("us"), QVariant::fromValue(items)});
    }
    static QString current()
    {
        return controller(QStringLiteral("CurrentInputMethod")).arguments().value(0).toString();
    }

    static bool addonPresent() { return onBus(QStringLiteral("app.tolvar.Fcitx5")); }

private:
    static bool focusContext()
    {
        qDBusRegisterMetaType<Fcitx5ClientInfo>();
        qDBusRegisterMetaType<QList<Fcitx5ClientInfo>>();
        const QDBusMessage reply =
            call(QStringLiteral("org.fcitx.Fcitx5"), QStringLiteral("/org/freedesktop/portal/inputmethod"),
                 QStringLiteral("org.fcitx.Fcitx.InputMethod1"), QStringLiteral("CreateInputContext"),
                 {QVariant::fromValue(QList<Fcitx5ClientInfo>{{QStringLiteral("program"), QStringLiteral("test")}})});
        const QString context = reply.arguments().value(0).value<QDBusObjectPath>().path();
        return reply.type() == QDBusMessage::ReplyMessage
               && call(QStringLiteral("org.fcitx.Fcitx5"), context, QStringLiteral("org.fcitx.Fcitx.InputContext1"),
                       QStringLiteral("FocusIn"))
                          .type()
                      == QDBusMessage::ReplyMessage;
    }
};
