// The graphical library's side of GuiLibrary::run.
#include "app/launch/GuiLibrary.h"
#include "app/launch/Roles.h"

#include <type_traits>

static_assert(std::is_same_v<decltype(&tolvarRunGraphical), GuiLibrary::EntryPoint>);

extern "C" int tolvarRunGraphical(int role, int *argc, char **argv, const char *focusIdentifier)
{
    switch (GuiLibrary::Role(role)) {
    case GuiLibrary::Role::Window: return runGraphicalInstance(*argc, argv, true);
    case GuiLibrary::Role::Background: return runGraphicalInstance(*argc, argv, false);
    case GuiLibrary::Role::FocusHelper: return runFocusHelper(*argc, argv, QString::fromUtf8(focusIdentifier));
    }
    return 1;
}
