#include "core/l10n/L10n.h"

#include "platform/ExecutableLocation.h"
#include "platform/OperatingSystem.h"
#include "platform/SystemLanguages.h"

#include <QHash>
#include <QLocale>

#include <memory>
#include <mutex>

namespace L10n {
namespace {

// Both locks here are for the login work on Qt's pool (AppModelActions), which
// describes its errors while the main thread may be choosing or reading texts.
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

using SharedTable = std::shared_ptr<const StringTable>;

std::mutex tablesMutex;
QHash<QString, SharedTable> tables;

// Tables are read once per language: they ship with the program and never change under it.
SharedTable tableFor(const QString &code)
{
    const std::lock_guard guard(tablesMutex);
    auto it = tables.find(code);
    if (it == tables.end()) {
        std::optional<StringTable> loaded = StringTable::load(resourceDirectory(), code);
        it = tables.insert(code, loaded ? std::make_shared<const StringTable>(std::move(*loaded)) : nullptr);
    }
    return *it;
}

QString lookUp(const StringTable &table, const QString &key)
{
    static const QString variant = QLatin1Char('@') + OperatingSystem::textVariant();
    if (std::optional<QString> own = table.text(key + variant))
        return *own;
    return table.text(key).value_or(key);
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
    if (const SharedTable table = tableFor(activeLanguage()))
        return lookUp(*table, key);
    // A language without a table falls back to the system's choice, then to English.
    for (const QString &code : {match(SystemLanguages::preferred()), QStringLiteral("en")}) {
        if (const SharedTable table = tableFor(code))
            return lookUp(*table, key);
    }
    return key;
}

QString text(const char *key)
{
    return text(QString::fromLatin1(key));
}

QString describe(const Error &error)
{
    if (error.wordsKey().isEmpty())
        return error.description();
    return filled(text(error.wordsKey()), error.wordsArguments());
}

QString filled(const QString &pattern, const QStringList &arguments)
{
    QString result;
    result.reserve(pattern.size());
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const qsizetype index = i + 1 < pattern.size() ? pattern.at(i + 1).digitValue() - 1 : -1;
        if (pattern.at(i) == QLatin1Char('%') && index >= 0 && index < arguments.size()) {
            result += arguments.at(index);
            ++i;
        } else {
            result += pattern.at(i);
        }
    }
    return result;
}

void replaceTable(const QString &code, std::optional<StringTable> table)
{
    const std::lock_guard guard(tablesMutex);
    if (table)
        tables.insert(code, std::make_shared<const StringTable>(std::move(*table)));
    else
        tables.remove(code);
}

} // namespace L10n
