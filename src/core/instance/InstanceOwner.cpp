#include "core/instance/InstanceOwner.h"

#include "core/instance/AppBuildInfo.h"

#include <QCoreApplication>

QByteArray InstanceOwner::encoded() const
{
    QByteArray text;
    if (version)
        text += "version=" + version->toUtf8() + '\n';
    if (build)
        text += "build=" + QByteArray::number(*build) + '\n';
    return text + "pid=" + QByteArray::number(pid) + '\n';
}

std::optional<InstanceOwner> InstanceOwner::parse(const QByteArray &text)
{
    InstanceOwner owner;
    for (const QByteArray &line : text.split('\n')) {
        const qsizetype equals = line.indexOf('=');
        const QByteArray key = line.left(equals);
        const QByteArray value = line.mid(equals + 1);
        if (equals < 0)
            continue;
        if (key == "version")
            owner.version = QString::fromUtf8(value);
        else if (key == "build")
            owner.build = AppBuildInfo::parseBuild(QString::fromUtf8(value));
        else if (key == "pid")
            owner.pid = value.toLongLong();
    }
    if (owner.pid <= 0)
        return std::nullopt;
    return owner;
}

InstanceOwner InstanceOwner::current()
{
    const AppBuildInfo build = AppBuildInfo::current();
    return {build.version, build.build, QCoreApplication::applicationPid()};
}
