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

// The top-level dictionary: texts, booleans and arrays of texts; empty when malformed.
QVariantMap readPlist(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    QXmlStreamReader xml(&file);
    QVariantMap dictionary;
    QString key;
    while (xml.readNextStartElement()) {
        const QString element = xml.name().toString();
        if (element == "key") {
            key = xml.readElementText();
        } else if (element == "array") {
            QStringList items;
            while (xml.readNextStartElement())
                items << xml.readElementText();
            dictionary[key] = items;
        } else if (element != "plist" && element != "dict") {
            const QString text = xml.readElementText();
            dictionary[key] = element == "string" ? QVariant(text) : QVariant(element == "true");
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
    const QString output = dir.filePath("Info.plist");
    QProcess cmake;
    cmake.start(TOLVAR_CMAKE,
                {"-DOUTPUT=" + output, QString("-DVERSION=") + row.version, QString("-DBUILD=") + row.build,
                 "-DMINIMUM_SYSTEM=13.0", QString("-DUPDATE_URL=") + row.updateURL, "-P",
                 QString(TOLVAR_SOURCE_DIR) + "/cmake/InfoPlist.cmake"});
    ASSERT_TRUE(cmake.waitForFinished(60000) && cmake.exitCode() == 0) << cmake.readAllStandardError().toStdString();

    const QVariantMap plist = readPlist(output);
    const QVariantMap expected = {{"CFBundleIdentifier", "app.tolvar"},
                                  {"CFBundleShortVersionString", row.version},
                                  {"CFBundleVersion", row.expectedBuild},
                                  {"LSMinimumSystemVersion", "13.0"},
                                  {"LSUIElement", true},
                                  {"TolvarUpdateURL", row.updateURL}};
    for (auto it = expected.begin(); it != expected.end(); ++it)
        EXPECT_EQ(plist.value(it.key()), it.value()) << it.key().toStdString();
    // One localisation per language the application speaks.
    QStringList languages;
    for (const L10n::Language &language : L10n::supported())
        languages << language.code;
    QStringList localizations = plist.value("CFBundleLocalizations").toStringList();
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
