#include "core/config/L10n.h"
#include "support/Process.h"

#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

namespace {

// The bundle's property list for a development build whose update address holds markup characters.
TEST(InfoPlistTest, RendersTheKeysTheSystemAndTheAppRead)
{
    QTemporaryDir dir;
    const QString output = dir.filePath("Info.plist");
    const ProcessResult cmake = runProcess(
        TOLVAR_CMAKE, {"-DOUTPUT=" + output, "-DVERSION=2.0", "-DBUILD=", "-DMINIMUM_SYSTEM=13.0",
                       "-DUPDATE_URL=https://x.test/m?a=1&b=<2>", "-P", TOLVAR_SOURCE_DIR "/cmake/InfoPlist.cmake"});
    ASSERT_EQ(cmake.exitCode, 0) << cmake.err.constData();
    const QString plist = QString::fromUtf8(readFile(output));
    QXmlStreamReader xml(plist);
    while (!xml.atEnd())
        xml.readNext();
    EXPECT_FALSE(xml.hasError()) << qPrintable(xml.errorString());
    QStringList expected = {"<key>CFBundleIdentifier</key>\n\t<string>app.tolvar</string>",
                            "<key>CFBundleShortVersionString</key>\n\t<string>2.0</string>",
                            "<key>CFBundleVersion</key>\n\t<string>0</string>",
                            "<key>LSMinimumSystemVersion</key>\n\t<string>13.0</string>",
                            "<key>LSUIElement</key>\n\t<true/>",
                            "<key>TolvarUpdateURL</key>\n\t<string>https://x.test/m?a=1&amp;b=&lt;2&gt;</string>"};
    for (const L10n::Language &language : L10n::supported())
        expected << QStringLiteral("\t\t<string>%1</string>").arg(language.code);
    for (const QString &text : expected)
        EXPECT_TRUE(plist.contains(text)) << qPrintable(text);
}

} // namespace
