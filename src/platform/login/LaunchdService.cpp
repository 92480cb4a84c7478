#include "platform/login/LaunchdService.h"

#include <QDir>
#include <QRegularExpression>

namespace LaunchdService {
namespace {

const QString label = QStringLiteral("app.tolvar");

QByteArray escaped(QString text)
{
    text.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    text.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    text.replace(QLatin1Char('>'), QLatin1String("&gt;"));
    return text.toUtf8();
}

// The first of ProgramArguments, its escapes undone.
QString programOf(const QString &definition)
{
    static const QRegularExpression first(
        QStringLiteral("<key>ProgramArguments</key>\\s*<array>\\s*<string>([^<]*)</string>"));
    return first.match(definition)
        .captured(1)
        .replace(QLatin1String("&lt;"), QLatin1String("<"))
        .replace(QLatin1String("&gt;"), QLatin1String(">"))
        .replace(QLatin1String("&amp;"), QLatin1String("&"));
}

} // namespace

ServiceManager manager(const QString &homeDirectory, unsigned userId)
{
    const QString domain = QStringLiteral("gui/") + QString::number(userId);
    const QString target = domain + QLatin1Char('/') + label;
    const QString file = QDir(homeDirectory).filePath(QStringLiteral("Library/LaunchAgents/app.tolvar.plist"));
    return {
        .program = QStringLiteral("/bin/launchctl"),
        .agentFile = file,
        .agentContent = propertyList,
        .loadedQuery = {QStringLiteral("print"), target},
        .disabledQuery = {QStringLiteral("print-disabled"), domain},
        .readMark = readMark,
        .enable = {QStringLiteral("enable"), target},
        .load = {QStringLiteral("bootstrap"), domain, file},
        .disable = {QStringLiteral("disable"), target},
        .unload = {QStringLiteral("bootout"), target},
        .leftovers = {},
        .programOf = programOf,
    };
}

QByteArray propertyList(const QString &executable)
{
    // KeepAlive/SuccessfulExit false: launchd starts the instance again only
    // when it ends with a failure.
    return QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                      "<plist version=\"1.0\">\n"
                      "<dict>\n"
                      "\t<key>KeepAlive</key>\n"
                      "\t<dict>\n"
                      "\t\t<key>SuccessfulExit</key>\n"
                      "\t\t<false/>\n"
                      "\t</dict>\n"
                      "\t<key>Label</key>\n"
                      "\t<string>app.tolvar</string>\n"
                      "\t<key>LimitLoadToSessionType</key>\n"
                      "\t<string>Aqua</string>\n"
                      "\t<key>ProgramArguments</key>\n"
                      "\t<array>\n"
                      "\t\t<string>")
           + escaped(executable)
           + "</string>\n"
             "\t\t<string>background</string>\n"
             "\t</array>\n"
             "\t<key>RunAtLoad</key>\n"
             "\t<true/>\n"
             "</dict>\n"
             "</plist>\n";
}

ServiceManager::Mark readMark(const ServiceToolResult &answer)
{
    using Mark = ServiceManager::Mark;
    if (answer.status != 0)
        return Mark::QueryFailed;
    if (!answer.output.contains(QLatin1String("disabled services = {")) || !answer.output.contains(QLatin1Char('}')))
        return Mark::Unreadable;

    static const QRegularExpression entry(QLatin1Char('"') + QRegularExpression::escape(label)
                                              + QLatin1String(R"("\s*=>\s*([^\s,;}]+))"),
                                          QRegularExpression::UseUnicodePropertiesOption);
    const QRegularExpressionMatch match = entry.match(answer.output);
    // launchd lists only the services whose mark was ever set.
    if (!match.hasMatch())
        return Mark::NotDisabled;
    const QString value = match.captured(1);
    if (value == QLatin1String("true") || value == QLatin1String("disabled"))
        return Mark::Disabled;
    if (value == QLatin1String("false") || value == QLatin1String("enabled"))
        return Mark::NotDisabled;
    return Mark::Unreadable;
}

} // namespace LaunchdService
