#include "core/l10n/L10n.h"
#include "core/l10n/StringTable.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

namespace {

const QString sourceResources = QStringLiteral(TOLVAR_SOURCE_DIR "/resources");

QSet<QString> placeholders(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("%\\d+"));
    QSet<QString> found;
    for (auto it = pattern.globalMatch(text); it.hasNext();)
        found.insert(it.next().captured());
    return found;
}

// Every key the sources name, by the families' prefixes.
QSet<QString> keysUsedInCode()
{
    static const QRegularExpression literal(QStringLiteral(
        R"re("((?:about|agent|app|cli|doctor|enf|err|lang|menu|panel|setup|state|ui|warn)\.[a-z][A-Za-z0-9.-]*)")re"));
    QSet<QString> keys;
    QDirIterator it(QStringLiteral(TOLVAR_SOURCE_DIR "/src"),
                    {QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.mm")}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString text = QString::fromUtf8(file.readAll());
        for (auto match = literal.globalMatch(text); match.hasNext();) {
            const QString key = match.next().captured(1);
            if (!key.startsWith(QLatin1String("app.tolvar"))) // notification and service names
                keys.insert(key);
        }
    }
    return keys;
}

// English has every key the code uses, and every other table has every English key with the same placeholders.
TEST(StringTablesTest, EveryLanguageHasEveryKey)
{
    const StringTable english = StringTable::load(sourceResources, QStringLiteral("en")).value_or(StringTable());
    const QSet<QString> used = keysUsedInCode();
    EXPECT_FALSE(used.isEmpty());
    for (const QString &key : used)
        EXPECT_TRUE(english.text(key).has_value()) << "missing " << qPrintable(key);
    // A platform's variant ("key@linux") rewords a plain key and keeps its placeholders.
    static const QRegularExpression variant(QStringLiteral("^(.+)@(?:linux|macos)$"));
    for (const QString &key : english.keys()) {
        if (!key.contains(QLatin1Char('@')))
            continue;
        EXPECT_EQ(placeholders(*english.text(key)),
                  placeholders(english.text(variant.match(key).captured(1)).value_or("%0")))
            << qPrintable(key);
    }
    for (const L10n::Language &language : L10n::supported()) {
        SCOPED_TRACE(language.code.toStdString());
        const std::optional<StringTable> table = StringTable::load(sourceResources, language.code);
        ASSERT_TRUE(table) << "no readable table";
        for (const QString &key : english.keys()) {
            const std::optional<QString> text = table->text(key);
            ASSERT_TRUE(text.has_value()) << "missing " << qPrintable(key);
            EXPECT_FALSE(text->trimmed().isEmpty()) << "empty " << qPrintable(key);
            EXPECT_EQ(placeholders(*text), placeholders(*english.text(key))) << qPrintable(key);
        }
        EXPECT_EQ(table->keys().size(), english.keys().size()) << "keys that English lacks";
    }
}

} // namespace
