#pragma once

#include <QString>
#include <QtGlobal>

// The windowed roles live in a library of their own, loaded only by the
// processes that take one of them, so that the command line starts without
// the graphical libraries.
namespace GuiLibrary {

enum class Role : int { Window, Background, FocusHelper };

using EntryPoint = int (*)(int role, int *argc, char **argv, const char *focusIdentifier);
inline constexpr char entryPointName[] = "tolvarRunGraphical";

// Loads the library and runs the role in it; 1, said on standard error, when
// the library cannot be loaded.
int run(Role role, int &argc, char **argv, const QString &focusIdentifier = {});

} // namespace GuiLibrary

// The library's one entry point, looked up by name, so under C linkage.
extern "C" Q_DECL_EXPORT int tolvarRunGraphical(int role, int *argc, char **argv, const char *focusIdentifier);
