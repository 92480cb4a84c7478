#pragma once

#include "base/Error.h"
#include "core/l10n/StringTable.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// Which language's texts are shown, and the lookup itself. The in-app override
// wins; otherwise the user's system-wide preferences pick among the five
// shipped languages, and English serves when none of them fits.
namespace L10n {

struct Language
{
    QString code;
    // The language's own name; never translated.
    QString displayName;
};

// In preference order: en, zh-Hans, zh-Hant, ja, ko.
const QList<Language> &supported();

// The code itself when it is one of the five (exact, case-sensitive), else absent.
std::optional<QString> normalized(const std::optional<QString> &code);

// The override; absent follows the system. Safe to use from any thread.
std::optional<QString> languageCode();
void setLanguageCode(const std::optional<QString> &code);

// The supported code that best serves a list of preferred languages ("fr-FR",
// "ja_JP.UTF-8", "zh-Hant-TW"...), or "en".
QString match(const QStringList &preferences);

// The language whose table is consulted now.
QString activeLanguage();

// The folder holding the text tables, found from the program's real path.
QString resourceDirectory();

// The text for a key in the active language; the key itself when it has none.
// A variant for the platform the program was built for ("key@linux") wins
// over the plain key.
QString text(const char *key);
QString text(const QString &key);

// An error in the active language: our own words for it when it carries them,
// else its description (a system's own message is shown as it is).
QString describe(const Error &error);

// `pattern` with %1 to %9 replaced in one pass, so that an argument's own "%1"
// stays as it is.
QString filled(const QString &pattern, const QStringList &arguments);

// For tests: `table` stands in for the language's shipped one; none brings
// the shipped one back.
void replaceTable(const QString &code, std::optional<StringTable> table);

} // namespace L10n
