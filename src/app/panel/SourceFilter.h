#pragma once

#include "core/sources/InputChoice.h"

#include <QList>
#include <QLocale>
#include <QString>

// The search over a source list, shared by the panel and the setup flow.
namespace SourceFilter {

// From this many sources on, the search field is always there.
inline constexpr int searchFrom = 7;

// The sources whose name contains `query` under the locale's case rules, in
// their order; all of them for an empty query. Identifiers are not searched,
// and the query is taken as typed, spaces included.
QList<InputChoice> filtered(const QList<InputChoice> &sources, const QString &query, const QLocale &locale = {});

// Whether a list of `count` sources shows its search field: always for a long
// list, and for a short one while a query typed earlier is still there.
bool showsSearch(qsizetype count, const QString &query);

} // namespace SourceFilter
