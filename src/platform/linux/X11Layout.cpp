#include "platform/linux/X11Layout.h"

#include <QProcess>

namespace X11Layout {
namespace {

// setxkbmap answers in a few milliseconds; a wedged X server must not hold the engine.
constexpr int runTimeoutMs = 2000;

const QString program = QStringLiteral("setxkbmap");

bool given(const QString &value)
{
    return !value.isEmpty() && value != QLatin1String("default");
}

std::optional<QString> run(const QStringList &arguments)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments, QIODevice::ReadOnly);
    if (!process.waitForStarted(runTimeoutMs) || !process.waitForFinished(runTimeoutMs)) {
        process.kill();
        process.waitForFinished(runTimeoutMs);
        return std::nullopt;
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return std::nullopt;
    return QString::fromUtf8(process.readAllStandardOutput());
}

} // namespace

bool isX11Session()
{
    const QString type = qEnvironmentVariable("XDG_SESSION_TYPE");
    if (!type.isEmpty())
        return type == QLatin1String("x11");
    return !qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

std::optional<QStringList> setArguments(const Names &names)
{
    if (!given(names.layout))
        return std::nullopt;
    // A layout without a variant means its basic variant, not the one set before.
    QStringList arguments{QStringLiteral("-layout"), names.layout, QStringLiteral("-variant"),
                          given(names.variant) ? names.variant : QString()};
    // An empty -option first drops the options set before instead of adding to them.
    if (given(names.options))
        arguments << QStringLiteral("-option") << QString() << QStringLiteral("-option") << names.options;
    return arguments;
}

Names parseQuery(const QString &output)
{
    Names names;
    for (const QString &line : output.split(QLatin1Char('\n'))) {
        const QString key = line.section(QLatin1Char(':'), 0, 0).trimmed();
        const QString value = line.section(QLatin1Char(':'), 1).trimmed();
        if (key == QLatin1String("layout"))
            names.layout = value;
        else if (key == QLatin1String("variant"))
            names.variant = value;
        else if (key == QLatin1String("options"))
            names.options = value;
    }
    return names;
}

bool apply(const Names &names)
{
    const std::optional<QStringList> arguments = setArguments(names);
    if (!arguments)
        return true;
    if (!run(*arguments))
        return false;
    const std::optional<Names> now = current();
    return now && now->layout == names.layout && now->variant == (given(names.variant) ? names.variant : QString());
}

std::optional<Names> current()
{
    const std::optional<QString> output = run({QStringLiteral("-query")});
    if (!output)
        return std::nullopt;
    return parseQuery(*output);
}

} // namespace X11Layout
