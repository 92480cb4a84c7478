#pragma once

#include "platform/input/InputSources.h"

#include <QList>
#include <QString>
#include <QVariant>

// Input sources as GNOME Shell keeps them, read and switched through Tolvar's
// shell extension on the session bus. Identifiers are the shell's own type and
// id, such as "xkb:de", "xkb:de+neo" or "ibus:hangul". Without the extension
// nothing else is asked: GNOME would undo any switch made past it.
namespace GnomeInputSources {

InputSources onSessionBus();

// The extension's answer to GetSources, one source per (id, name, label, type);
// empty for anything of another shape.
QList<SourceProperties> describe(const QVariant &reply);

// Why the extension does not run, from the shell's GetExtensionInfo answer
// (empty when the shell does not know it) and whether its files are installed.
InputSources::Availability whyNotRunning(const QVariantMap &info, bool installed);

} // namespace GnomeInputSources
