#pragma once

// Who asked for a switch. Automatic requests (the triggers) give way while
// keeping is off and to any manual one; manual requests (the window's apply,
// the command line) run regardless.
enum class SwitchOrigin { Automatic, Manual };
