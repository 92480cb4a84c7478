#include "app/launch/GuiLibrary.h"

#include "platform/ExecutableLocation.h"

#include <QLibrary>

#include <cstdio>

namespace GuiLibrary {

int run(Role role, int &argc, char **argv, const QString &focusIdentifier)
{
    QLibrary library(ExecutableLocation::graphicalLibrary(ExecutableLocation::path()));
    // The process ends inside it; nothing is gained by unloading it first.
    library.setLoadHints(QLibrary::PreventUnloadHint);
    const auto entry = reinterpret_cast<EntryPoint>(library.resolve(entryPointName));
    if (!entry) {
        std::fprintf(stderr, "tolvar: %s\n", qPrintable(library.errorString()));
        return 1;
    }
    const QByteArray identifier = focusIdentifier.toUtf8();
    return entry(int(role), &argc, argv, identifier.constData());
}

} // namespace GuiLibrary
