#pragma once

#include "core/sources/InputChoice.h"
#include "core/sources/Source.h"
#include "platform/input/InputSources.h"

#include <QList>
#include <QString>

#include <optional>

// The keyboard input sources the user may pin. Every call asks the system
// again, so sources enabled or removed meanwhile show at the next call.
namespace Catalog {

// The selectable sources, in the system's order: enabled, able to be selected,
// and keyboard sources, each property present and of the right type.
QList<Source> selectable(const InputSources &system = InputSources::live());
// One choice per selectable source, in the same order; no sorting, no de-duplication.
QList<InputChoice> choices(const InputSources &system = InputSources::live());
// The system's current keyboard source, its name read from the system; both
// fields empty when there is none, the name empty when the system gives none.
InputChoice current(const InputSources &system = InputSources::live());
// The first selectable source whose identifier is exactly `id`.
std::optional<Source> find(const QString &id, const InputSources &system = InputSources::live());

} // namespace Catalog
