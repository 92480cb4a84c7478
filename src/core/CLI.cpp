#include "CLI.h"

#include "L10n.h"

#include <QIODevice>

namespace CLI {
namespace {

void writeLine(QIODevice &device, const QString &text)
{
    device.write((text + QLatin1Char('\n')).toUtf8());
}

} // namespace

QString usage()
{
    static const char *const keys[] = {
        "cli.usage.header", "cli.usage.status",  "cli.usage.list",      "cli.usage.pause",
        "cli.usage.resume", "cli.usage.toggle",  "cli.usage.set",       "cli.usage.apply",
        "cli.usage.open",   "cli.usage.install", "cli.usage.uninstall",
    };
    QStringList lines;
    for (const char *key : keys)
        lines << L10n::text(key);
    return lines.join(QLatin1Char('\n'));
}

int main(const QStringList &arguments, QIODevice &out, QIODevice &err)
{
    static const QStringList helpWords = {QStringLiteral("help"), QStringLiteral("-h"), QStringLiteral("--help")};
    if (arguments.size() == 1 && helpWords.contains(arguments.first())) {
        writeLine(out, usage());
        return 0;
    }
    // The commands themselves are not built yet: everything else is refused.
    writeLine(err, usage());
    return 1;
}

} // namespace CLI
