#include "core/update/NetworkLoader.h"
#include "core/update/NumericVersion.h"
#include "core/update/SecureURL.h"
#include "core/update/UpdateChecker.h"
#include "support/UpdateChecks.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

using Kind = UpdateCheckResult::Kind;
using Failure = UpdateCheckFailure::Kind;

QByteArray manifestWith(const QJsonObject &changes, const QStringList &removed = {})
{
    QJsonObject manifest{
        {"bundleIdentifier", "app.tolvar"},       {"version", "1.3"}, {"build", 9}, {"minimumSystemVersion", "26.0"},
        {"releaseURL", "https://tolvar.app/1.3"}, {"notes", "Fixes."}};
    for (auto it = changes.begin(); it != changes.end(); ++it)
        manifest.insert(it.key(), it.value());
    for (const QString &key : removed)
        manifest.remove(key);
    return QJsonDocument(manifest).toJson();
}

const AppBuildInfo local{"1.2", 7, "26.0", "https://tolvar.app/update.json"};
const QUrl manifestAddress("https://tolvar.app/update.json");

LoadOutcome served(const QByteArray &body, const QUrl &url = manifestAddress)
{
    return LoadedResponse{body, url, 200};
}

UpdateCheckResult availableWith(const QJsonObject &changes, bool requiresNewerSystem = false)
{
    return UpdateCheckResult::available(*ReleaseManifest::decode(manifestWith(changes)), requiresNewerSystem);
}

UpdateCheckResult failed(Failure kind)
{
    return UpdateCheckResult::failed(kind);
}

const QString tooLongNotes(ReleaseManifest::maximumNotesLength + 1, u'x');
const QString longestNotes(ReleaseManifest::maximumNotesLength, u'x');
const UpdateCheckResult invalid = failed(Failure::InvalidManifest);

TEST(UpdateCheckTest, TrustsOnlyAWellFormedManifestForThisApplication)
{
    const auto judged = [](const LoadOutcome &loaded) { return UpdateChecker::evaluate(loaded, local, "26.0.1"); };
    // The manifest's changes and removed keys; then the result, none for an update described by that manifest.
    // clang-format off
    const std::tuple<QJsonObject, QStringList, std::optional<UpdateCheckResult>> rows[] = {
        {{{"version", "1.2.0"}, {"build", 8}}, {}, std::nullopt},
        {{{"version", "1.2.0"}, {"build", 7}}, {}, UpdateCheckResult::of(Kind::UpToDate)},
        {{{"version", "1.1.9"}, {"build", 99}}, {}, UpdateCheckResult::of(Kind::LocalNewer)},
        {{{"version", "1.2"}, {"build", 6}}, {}, UpdateCheckResult::of(Kind::LocalNewer)},
        {{{"version", "1.3"}, {"build", 1}}, {}, std::nullopt},
        {{{"minimumSystemVersion", "27"}}, {}, availableWith({{"minimumSystemVersion", "27"}}, true)},
        {{{"notes", longestNotes}}, {}, std::nullopt},
        {{{"channel", "beta"}}, {}, availableWith({})},
        {{}, {"notes"}, availableWith({{"notes", QJsonValue::Null}})},
        {{{"bundleIdentifier", "App.Tolvar"}}, {}, failed(Failure::WrongApplication)},
        {{}, {"bundleIdentifier"}, invalid}, {{{"version", "1.3b1"}}, {}, invalid}, {{{"build", 9.5}}, {}, invalid},
        {{{"build", 0}}, {}, invalid}, {{{"notes", tooLongNotes}}, {}, invalid},
        {{{"releaseURL", "http://tolvar.app/r"}}, {}, invalid}};
    // clang-format on
    for (const auto &[changes, removed, expected] : rows)
        EXPECT_EQ(judged(served(manifestWith(changes, removed))), expected ? *expected : availableWith(changes))
            << QJsonDocument(changes).toJson(QJsonDocument::Compact).constData() << qPrintable(removed.join(' '));

    EXPECT_EQ(judged(LoadedResponse{manifestWith({}), manifestAddress, std::nullopt}),
              failed(Failure::InvalidResponse));
    EXPECT_EQ(judged(served(manifestWith({}), QUrl())), failed(Failure::InsecureRedirect));
    EXPECT_EQ(judged(served("[]")), invalid);
}

AppBuildInfo localWith(std::optional<QString> version, std::optional<qint64> build, std::optional<QString> url)
{
    return AppBuildInfo{std::move(version), build, "26.0", std::move(url)};
}

const QString address = "https://tolvar.app/update.json";
const UpdateCheckResult badVersion = failed(Failure::InvalidCurrentVersion);

// Answers that need no network never reach the loader.
TEST(UpdateCheckTest, DecidesWithoutTheNetwork)
{
    // clang-format off
    const std::tuple<AppBuildInfo, QString, UpdateCheckResult> rows[] = {
        {localWith("1.2", 7, std::nullopt), "26.0", UpdateCheckResult::of(Kind::Unconfigured)},
        {localWith("1.2", 7, ""), "26.0", UpdateCheckResult::of(Kind::Unconfigured)},
        {localWith("1.2", 7, "http://tolvar.app/u.json"), "26.0", failed(Failure::InvalidSource)},
        {localWith(std::nullopt, 7, address), "26.0", badVersion},
        {localWith("1.2-dev", 7, address), "26.0", badVersion},
        {localWith("1.2", 0, address), "26.0", badVersion},
        {localWith("1.2", 7, address), "26.0.1.2.3", badVersion}};
    // clang-format on
    for (const auto &[current, systemVersion, expected] : rows) {
        int loads = 0;
        EXPECT_EQ(runToEnd({current, systemVersion, [&](const QNetworkRequest &, QObject *, auto) { ++loads; }}),
                  expected);
        EXPECT_EQ(loads, 0);
    }
}

TEST(NumericVersionTest, AcceptsOneToFourNumbersOnly)
{
    // clang-format off
    const std::pair<QString, QList<qint64>> accepted[] = {{"1", {1}}, {"1.2.3.4", {1, 2, 3, 4}}, {"01.002", {1, 2}},
                                                          {"9223372036854775807", {9223372036854775807}}};
    // clang-format on
    for (const auto &[text, components] : accepted)
        EXPECT_EQ(NumericVersion::parse(text).value_or(*NumericVersion::parse(u"0")).components(), components)
            << qPrintable(text);
    for (const QString text : {"", "1.", ".1", "1..2", "1.2.3.4.5", "1.2a", " 1.2", "1.2 ", "+1",
                               "99999999999999999999", "\xef\xbc\x91.\xef\xbc\x92" /* full-width digits */})
        EXPECT_FALSE(NumericVersion::parse(text)) << qPrintable(text);
}

TEST(NumericVersionTest, MissingComponentsCountAsZero)
{
    using Row = std::tuple<const char *, const char *, bool>; // left < right?
    for (const auto &[left, right, less] :
         {Row{"1.0", "1.0.1", true}, Row{"1.0.0", "1.0", false}, Row{"1.0", "1.0.0", false}, Row{"1.9", "1.10", true},
          Row{"1.99.99.99", "2", true}})
        EXPECT_EQ(*NumericVersion::parse(QString(left)) < *NumericVersion::parse(QString(right)), less)
            << left << " " << right;
}

TEST(SecureURLTest, OnlyPlainHttpsAddresses)
{
    for (const char *text : {"https://example.com/tolvar.json", "HTTPS://example.com:443/m.json?channel=beta",
                             "https://example.com:65535/"})
        EXPECT_TRUE(secureURL(text)) << text;
    for (const char *text :
         {"http://example.com/m.json", "example.com/m.json", "https://user@example.com/", "https://example.com/m.json#",
          "https://example.com:0/", "https://example.com:65536/", "https:///m.json", "https://exa mple.com/"})
        EXPECT_FALSE(secureURL(text)) << text;
}

} // namespace
