#pragma once

#include "platform/input/InputSources.h"

#include <QString>

#include <functional>

// Input sources as IBus engines: an engine's name is the source's identifier,
// the engines the user keeps preloaded are the enabled sources, and IBus's
// global engine is the selected source.
namespace IBusInputSources {

// Sources from the IBus daemon at whatever `address` says when there is no
// connection; an empty address means IBus is not running. `sent`, when given,
// is told of each message sent to IBus.
InputSources at(std::function<QString()> address, std::function<void()> sent = {});

} // namespace IBusInputSources
