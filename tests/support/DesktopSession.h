#pragma once

#include "core/config/ConfigStore.h"
#include "support/Process.h"
#include "support/Spin.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>

// One desktop program started in the test's private session, and the real
// tolvar run against it, once or kept in the background. Spelled for the
// strict build too, as the engine benchmark includes it.
class DesktopSession
{
public:
    ~DesktopSession() { stop(); }

    static bool onBus(const QString &name)
    {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(name);
    }

    static QDBusMessage call(const QString &service, const QString &path, const QString &interface,
                             const QString &method, const QVariantList &arguments = {})
    {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        return QDBusConnection::sessionBus().call(message, QDBus::Block, 5000);
    }

    // Starts `program` with its output in `log`; true once `ready` holds.
    bool start(const QString &program, const QStringList &arguments, const std::function<bool()> &ready, int timeoutMs,
               const QString &log = QProcess::nullDevice())
    {
        m_program.setProcessChannelMode(QProcess::MergedChannels);
        m_program.setStandardOutputFile(log);
        m_program.start(program, arguments);
        return m_program.waitForStarted() && spinUntil(ready, timeoutMs);
    }

    void stop()
    {
        if (m_program.state() == QProcess::NotRunning)
            return;
        m_program.kill();
        m_program.waitForFinished();
    }

    const QProcess &program() const { return m_program; }

    ProcessResult tolvar(const QStringList &arguments, int timeoutMs = 30000) const
    {
        return runProcess(QStringLiteral(TOLVAR_EXECUTABLE), arguments, environment, timeoutMs);
    }

    static QJsonObject json(const ProcessResult &result) { return QJsonDocument::fromJson(result.out).object(); }
    QJsonObject status(int timeoutMs = 30000) const
    {
        const ProcessResult result = tolvar({QStringLiteral("status"), QStringLiteral("--json")}, timeoutMs);
        return json(result)[QLatin1String("status")].toObject();
    }

    QStringList listed() const
    {
        QStringList ids;
        const QJsonObject list = json(tolvar({QStringLiteral("list"), QStringLiteral("--json")}));
        for (const QJsonValue &source : list[QLatin1String("sources")].toArray())
            ids << source.toObject()[QLatin1String("id")].toString();
        return ids;
    }

    // Pins `id` and starts a background instance; true once `kept` holds.
    bool keep(const QString &id, const std::function<bool()> &kept, int timeoutMs = 10000)
    {
        if (!ConfigStore::write(Config{.sourceID = id, .enabled = true, .onboardingCompleted = true},
                                ConfigStore::directory())
                 .ok())
            return false;
        m_instance.setProcessEnvironment(environment);
        m_instance.start(QStringLiteral(TOLVAR_EXECUTABLE), {QStringLiteral("background")});
        return m_instance.waitForStarted() && spinUntil(kept, timeoutMs);
    }

    Instance &instance() { return m_instance; }

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();

private:
    QProcess m_program;
    Instance m_instance;
};
