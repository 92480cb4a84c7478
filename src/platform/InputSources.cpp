#include "platform/InputSources.h"

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
