#pragma once

#include "platform/login/ServiceToolResult.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

// What the login agent needs from the platform's per-user service manager:
// where the agent's definition lives, what it says, and the command line for
// each question and change. Every command line runs `program`; a status other
// than 0 is a failure, and the loaded question is answered by the status alone.
// An empty command line is a step this manager does not have: it succeeds, the
// agent never counts as loaded, and without a disabled question the mark is
// read from the agent's file itself.
struct ServiceManager
{
    // How the service manager marks the agent, read from the disabled question's answer.
    enum class Mark { NotDisabled, Disabled, Unreadable, QueryFailed };

    QString program;
    // Absolute path of the file that defines the agent.
    QString agentFile;
    // The definition that starts this executable with "background".
    std::function<QByteArray(const QString &executable)> agentContent;
    QStringList loadedQuery;
    QStringList disabledQuery;
    std::function<Mark(const ServiceToolResult &answer)> readMark;
    QStringList enable;
    QStringList load;
    QStringList disable;
    QStringList unload;
    // Files earlier installations left that would start the agent a second way;
    // install and uninstall remove them.
    QStringList leftovers = {};
    // The program a definition starts; empty when it names none.
    std::function<QString(const QString &definition)> programOf = [](const QString &) { return QString(); };

    // This platform's service manager for the current user.
    static ServiceManager live();
};
