#include "platform/SessionFacts.h"

// One stack and a menu bar that is always there.
SessionFacts SessionFacts::live()
{
    return {.stack =
                [] {
                    return Stack{QStringLiteral("macos"), {}, {QStringLiteral("macos")}};
                },
            .sessionType = [] { return QString(); },
            .trayHost = []() -> std::optional<QString> { return QStringLiteral("menu bar"); }};
}
