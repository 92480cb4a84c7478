#include "app/panel/SourceFilter.h"

namespace SourceFilter {

QList<InputChoice> filtered(const QList<InputChoice> &sources, const QString &query, const QLocale &locale)
{
    if (query.isEmpty())
        return sources;
    const QString needle = locale.toLower(query);
    QList<InputChoice> matches;
    for (const InputChoice &source : sources) {
        if (locale.toLower(source.name).contains(needle))
            matches << source;
    }
    return matches;
}

bool showsSearch(qsizetype count, const QString &query)
{
    return count >= searchFrom || !query.isEmpty();
}

} // namespace SourceFilter
