#include "core/config/L10n.h"

#include "core/config/StringTable.h"
#include "platform/ExecutableLocation.h"
#include "platform/SystemLanguages.h"

#include <QHash>
#include <QLocale>

#include <mutex>

namespace L10n {
namespace {

std::mutex overrideMutex;
std::optional<QString> overrideCode;

std::optional<QString> supportedFor(QString preference)
{
    preference = preference.section(QLatin1Char('.'), 0, 0).section(QLatin1Char('@'), 0, 0);
    preference.replace(QLatin1Char('_'), QLatin1Char('-'));
    if (preference.isEmpty())
        return std::nullopt;
    if (auto exact = normalized(preference))
        return exact;

    const QLocale locale(preference);
    switch (locale.language()) {
    case QLocale::English: return QStringLiteral("en");
    case QLocale::Japanese: return QStringLiteral("ja");
    case QLocale::Korean: return QStringLiteral("ko");
    case QLocale::Chinese: {
        // An explicit script decides; otherwise the region's usual one (TW, HK, MO: traditional).
        if (preference.contains(QLatin1String("Hant"), Qt::CaseInsensitive))
            return QStringLiteral("zh-Hant");
        if (preference.contains(QLatin1String("Hans"), Qt::CaseInsensitive))
            return QStringLiteral("zh-Hans");
        return locale.script() == QLocale::TraditionalHanScript ? QStringLiteral("zh-Hant") : QStringLiteral("zh-Hans");
    }
    default: return std::nullopt;
    }
}

// Tables are read once per language: they ship with the program and never change under it.
const StringTable *tableFor(const QString &code)
{
    static std::mutex mutex;
    static QHash<QString, std::optional<StringTable>> tables;
    const std::lock_guard guard(mutex);
    auto it = tables.find(code);
    if (it == tables.end())
        it = tables.insert(code, StringTable::load(resourceDirectory(), code));
    return it->has_value() ? &it->value() : nullptr;
}

} // namespace

const QList<Language> &supported()
{
    static const QList<Language> languages = {
        {QStringLiteral("en"), QStringLiteral("English")},
        {QStringLiteral("zh-Hans"), QStringLiteral("简体中文")},
        {QStringLiteral("zh-Hant"), QStringLiteral("繁體中文")},
        {QStringLiteral("ja"), QStringLiteral("日本語")},
        {QStringLiteral("ko"), QStringLiteral("한국어")},
    };
    return languages;
}

std::optional<QString> normalized(const std::optional<QString> &code)
{
    if (!code)
        return std::nullopt;
    for (const Language &language : supported()) {
        if (language.code == *code)
            return code;
    }
    return std::nullopt;
}

std::optional<QString> languageCode()
{
    const std::lock_guard guard(overrideMutex);
    return overrideCode;
}

void setLanguageCode(const std::optional<QString> &code)
{
    const std::lock_guard guard(overrideMutex);
    overrideCode = code;
}

QString match(const QStringList &preferences)
{
    for (const QString &preference : preferences) {
        if (const auto code = supportedFor(preference))
            return *code;
    }
    return QStringLiteral("en");
}

QString activeLanguage()
{
    if (const auto code = languageCode())
        return *code;
    return match(SystemLanguages::preferred());
}

QString resourceDirectory()
{
    static const QString directory = ExecutableLocation::resourceDirectory(ExecutableLocation::path());
    return directory;
}

QString text(const QString &key)
{
    if (const StringTable *table = tableFor(activeLanguage()))
        return table->text(key).value_or(key);
    // A language without a table falls back to the system's choice, then to English.
    for (const QString &code : {match(SystemLanguages::preferred()), QStringLiteral("en")}) {
        if (const StringTable *table = tableFor(code))
            return table->text(key).value_or(key);
    }
    return key;
}

QString text(const char *key)
{
    return text(QString::fromLatin1(key));
}

} // namespace L10n
