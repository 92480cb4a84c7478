#pragma once

#include <QStringList>

namespace SystemLanguages {

// The user's system-wide preferred interface languages, most wanted first.
QStringList preferred();

} // namespace SystemLanguages
