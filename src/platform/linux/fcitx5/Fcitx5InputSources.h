#pragma once

#include "platform/input/InputSources.h"

// Input sources as the input methods of Fcitx5's current group, through its
// controller on the session bus. An input method's unique name is the source's
// identifier, and the current one is that of the most recently focused input
// context.
//
// The group's first item is what Fcitx5 types with while it is switched off
// ("inactive"). It is listed like the others, under its own name: pinning it
// keeps Fcitx5 switched off, pinning any other item keeps Fcitx5 on with that
// method.
//
// Fcitx5 itself tells outside programs nothing when the method changes. While
// Tolvar's addon is loaded its signals say it; otherwise the selection is
// polled, and only while the owner of the port says it needs to know
// (needSelected). Nothing here ever starts Fcitx5.
namespace Fcitx5InputSources {

InputSources live();

} // namespace Fcitx5InputSources
