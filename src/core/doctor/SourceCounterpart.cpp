#include "core/doctor/SourceCounterpart.h"

namespace SourceCounterpart {

QString essence(const QString &id)
{
    const auto layout = [](const QString &name, const QString &variant) {
        return variant.isEmpty() ? name : name + QLatin1Char('(') + variant + QLatin1Char(')');
    };
    // IBus: xkb:layout:variant:language.
    if (id.startsWith(QLatin1String("xkb:")) && id.count(QLatin1Char(':')) >= 2)
        return layout(id.section(QLatin1Char(':'), 1, 1), id.section(QLatin1Char(':'), 2, 2));
    // GNOME: xkb:layout+variant, ibus:engine.
    if (id.startsWith(QLatin1String("xkb:")))
        return layout(id.mid(4).section(QLatin1Char('+'), 0, 0), id.mid(4).section(QLatin1Char('+'), 1));
    if (id.startsWith(QLatin1String("ibus:")))
        return id.mid(5);
    // Fcitx5: keyboard-layout-variant.
    if (id.startsWith(QLatin1String("keyboard-")))
        return layout(id.mid(9).section(QLatin1Char('-'), 0, 0), id.mid(9).section(QLatin1Char('-'), 1));
    // Plasma's "de(neo)" and every other engine name are their own.
    return id;
}

std::optional<QString> among(const QString &pinned, const QStringList &ids)
{
    const QString wanted = essence(pinned);
    for (const QString &id : ids)
        if (id != pinned && essence(id) == wanted)
            return id;
    return std::nullopt;
}

} // namespace SourceCounterpart
