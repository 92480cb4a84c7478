#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include "support/Spin.h"

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
class Fcitx5Session
{
public:
    static bool installed() { return !QStandardPaths::findExecutable(QStringLiteral("fcitx5")).isEmpty(); }

    static bool running()
    {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(QStringLiteral("org.fcitx.Fcitx5"));
    }

    ~Fcitx5Session() { stop(); }

    bool start(const QStringList &items)
    {
        const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/fcitx5");
        QDir().mkpath(folder);
        QFile profile(folder + QStringLiteral("/profile"));
        if (!profile.open(QIODevice::WriteOnly))
            return false;
        QByteArray text = "[Groups/0]\nName=Default\nDefault Layout=us\nDefaultIM=" + items.value(1).toUtf8() + "\n";
        for (qsizetype i = 0; i < items.size(); ++i)
            text += QStringLiteral("[Groups/0/Items/%1]\nName=%2\nLayout=\n").arg(i).arg(items[i]).toUtf8();
        profile.write(text + "[GroupOrder]\n0=Default\n");
        profile.close();
        m_process.setStandardOutputFile(QProcess::nullDevice());
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start(QStringLiteral("fcitx5"), {QStringLiteral("-D"), QStringLiteral("--disable=all"),
                                                   QStringLiteral("--enable=dbus,dbusfrontend,keyboard,hangul")});
        return m_process.waitForStarted() && spinUntil(running, 10000) && focusContext();
    }

    void stop()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.terminate();
        if (!m_process.waitForFinished(5000))
            m_process.kill();
        m_process.waitForFinished();
        spinUntil([] { return !running(); }, 5000);
    }

    static QDBusMessage controller(const QString &method, const QVariantList &arguments = {})
    {
        QDBusMessage message =
            QDBusMessage::createMethodCall(QStringLiteral("org.fcitx.Fcitx5"), QStringLiteral("/controller"),
                                           QStringLiteral("org.fcitx.Fcitx.Controller1"), method);
        message.setArguments(arguments);
        return QDBusConnection::sessionBus().call(message, QDBus::Block, 5000);
    }

    // Another program switching, as Fcitx5's own hotkeys and indicator do.
    static void switchTo(const QString &name) { controller(QStringLiteral("SetCurrentIM"), {name}); }
    static QString current()
    {
        return controller(QStringLiteral("CurrentInputMethod")).arguments().value(0).toString();
    }

private:
    static bool focusContext()
    {
        QDBusMessage create = QDBusMessage::createMethodCall(
            QStringLiteral("org.fcitx.Fcitx5"), QStringLiteral("/org/freedesktop/portal/inputmethod"),
            QStringLiteral("org.fcitx.Fcitx.InputMethod1"), QStringLiteral("CreateInputContext"));
        qDBusRegisterMetaType<Fcitx5ClientInfo>();
        qDBusRegisterMetaType<QList<Fcitx5ClientInfo>>();
        create.setArguments(
            {QVariant::fromValue(QList<Fcitx5ClientInfo>{{QStringLiteral("program"), QStringLiteral("test")}})});
        const QDBusMessage reply = QDBusConnection::sessionBus().call(create, QDBus::Block, 5000);
        if (reply.type() != QDBusMessage::ReplyMessage)
            return false;
        const QString context = reply.arguments().value(0).value<QDBusObjectPath>().path();
        const QDBusMessage focus =
            QDBusMessage::createMethodCall(QStringLiteral("org.fcitx.Fcitx5"), context,
                                           QStringLiteral("org.fcitx.Fcitx.InputContext1"), QStringLiteral("FocusIn"));
        return QDBusConnection::sessionBus().call(focus, QDBus::Block, 5000).type() == QDBusMessage::ReplyMessage;
    }

    QProcess m_process;
};
