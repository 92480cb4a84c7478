#include "core/config/L10n.h"

#include "support/ParamName.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QVariantMap>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

namespace {

struct PlistCase
{
    const char *name;
    const char *version;
    const char *build;
    const char *updateURL;
    const char *expectedBuild;
};

// The top-level dictionary: texts, booleans and arrays of texts.
QVariantMap readPlist(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QXmlStreamReader xml(&file);
    QVariantMap dictionary;
    QString key;
    while (xml.readNextStartElement()) {
        const QString element = xml.name().toString();
        if (element == u"plist" || element == u"dict")
            continue;
        if (element == u"key") {
            key = xml.readElementText();
        } else if (element == u"array") {
            QStringList items;
            while (xml.readNextStartElement())
                items << xml.readElementText();
            dictionary[key] = items;
        } else {
            const QString text = xml.readElementText();
            dictionary[key] = element == u"string" ? QVariant(text) : QVariant(element == u"true");
        }
    }
    return xml.hasError() ? QVariantMap() : dictionary;
}

class InfoPlistTest : public testing::TestWithParam<PlistCase>
{
};

TEST_P(InfoPlistTest, RendersTheKeysTheSystemAndTheAppRead)
{
    const PlistCase &row = GetParam();
    QTemporaryDir dir;
    const QString output = dir.filePath(QStringLiteral("Info.plist"));
    QProcess cmake;
    cmake.start(QStringLiteral(TOLVAR_CMAKE),
                {QStringLiteral("-DOUTPUT=") + output, QStringLiteral("-DVERSION=%1").arg(row.version),
                 QStringLiteral("-DBUILD=%1").arg(row.build), QStringLiteral("-DMINIMUM_SYSTEM=13.0"),
                 QStringLiteral("-DUPDATE_URL=%1").arg(row.updateURL), QStringLiteral("-P"),
                 QStringLiteral(TOLVAR_SOURCE_DIR "/cmake/InfoPlist.cmake")});
    ASSERT_TRUE(cmake.waitForFinished(60000) && cmake.exitCode() == 0) << cmake.readAllStandardError().toStdString();

    const QVariantMap plist = readPlist(output);
    EXPECT_EQ(plist.value(QStringLiteral("CFBundleIdentifier")), QStringLiteral("app.tolvar"));
    EXPECT_EQ(plist.value(QStringLiteral("CFBundleShortVersionString")), QString::fromUtf8(row.version));
    EXPECT_EQ(plist.value(QStringLiteral("CFBundleVersion")), QString::fromUtf8(row.expectedBuild));
    EXPECT_EQ(plist.value(QStringLiteral("LSMinimumSystemVersion")), QStringLiteral("13.0"));
    EXPECT_EQ(plist.value(QStringLiteral("LSUIElement")), true);
    EXPECT_EQ(plist.value(QStringLiteral("TolvarUpdateURL")), QString::fromUtf8(row.updateURL));
    EXPECT_EQ(plist.value(QStringLiteral("CFBundleExecutable")), QStringLiteral("Tolvar"));
    EXPECT_EQ(plist.value(QStringLiteral("CFBundleIconFile")), QStringLiteral("AppIcon"));
    QStringList languages;
    for (const L10n::Language &language : L10n::supported())
        languages << language.code;
    QStringList localizations = plist.value(QStringLiteral("CFBundleLocalizations")).toStringList();
    languages.sort();
    localizations.sort();
    EXPECT_EQ(localizations, languages);
}

INSTANTIATE_TEST_SUITE_P(Bundle, InfoPlistTest,
                         testing::Values(PlistCase{"Release", "1.4.0", "57", "https://tolvar.app/releases.json", "57"},
                                         PlistCase{"DevelopmentBuildHasBuildZero", "0.1.0", "", "", "0"},
                                         PlistCase{"AddressWithMarkupCharacters", "2.0", "3",
                                                   "https://x.test/m?a=1&b=<2>", "3"}),
                         ParamName());

} // namespace
