#include "platform/input/InputSources.h"

#include <QThread>

InputSources InputSources::none()
{
    const auto cannotTell = [](QObject *, const std::function<void()> &) { return false; };
    return {[] { return QList<SourceProperties>(); },
            [](const QString &) { return QList<SourceProperties>(); },
            [] { return QString(); },
            [](const QString &) { return unavailable; },
            [] { return false; },
            cannotTell,
            cannotTell};
}

qint32 InputSources::selectPatiently(const InputSources &system, const QString &id, unsigned long firstPauseMs)
{
    qint32 status = system.select(id);
    for (int retry = 0; status == refused && retry < 3; ++retry) {
        QThread::msleep(firstPauseMs << retry);
        status = system.select(id);
    }
    return status;
}
