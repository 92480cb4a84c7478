#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// The same input source under another stack's identifier: "xkb:de::deu" on
// IBus is "xkb:de" on GNOME, "de" on Plasma and "keyboard-de" on Fcitx5;
// "hangul" is "ibus:hangul" on GNOME.
namespace SourceCounterpart {

// The layout and variant, or the engine, that an identifier names, as "de",
// "de(neo)" or "hangul".
QString essence(const QString &id);
// The one of `ids` that names the same source as `pinned`; none when no one does.
std::optional<QString> among(const QString &pinned, const QStringList &ids);

} // namespace SourceCounterpart
