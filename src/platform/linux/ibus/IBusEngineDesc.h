#pragma once

#include "platform/input/SourceProperties.h"
#include "platform/linux/x11/X11Layout.h"

#include <QString>
#include <QVariant>

#include <optional>

// Reads the engine descriptions IBus sends: a serialized IBusEngineDesc inside
// a D-Bus variant, the struct (type name, attachments, name, long name,
// description, language, license, author, icon, layout, rank, hotkeys,
// symbol, ...). Fields that are missing or of another type are passed on as
// such, never guessed. A D-Bus argument can be read only once: give each
// reader its own value.
namespace IBusEngineDesc {

// The engine's properties as an input source, with `enabled` left unset;
// none when the value is not an engine description at all.
std::optional<SourceProperties> properties(const QVariant &value);

// Both of the above from one reading.
struct Engine
{
    SourceProperties properties;
    X11Layout::Names layout;
};
std::optional<Engine> engine(const QVariant &value);

// The engine's name; empty when the value carries none.
QString name(const QVariant &value);

// The XKB layout, variant and options the engine asks for; none when the
// value is not an engine description.
std::optional<X11Layout::Names> layout(const QVariant &value);

// The value inside any number of D-Bus variant wrappings.
QVariant unwrap(QVariant value);

} // namespace IBusEngineDesc
