#include "core/update/NetworkLoader.h"
#include "core/update/UpdateChecker.h"
#include "support/ParamName.h"
#include "support/UpdatePrinting.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

using Kind = UpdateCheckResult::Kind;
using Failure = UpdateCheckFailure::Kind;

const QJsonObject validManifest{{"bundleIdentifier", "app.tolvar"},
                                {"version", "1.3"},
                                {"build", 9},
                                {"minimumSystemVersion", "26.0"},
                                {"releaseURL", "https://tolvar.app/releases/1.3"},
                                {"notes", "Fixes."}};

QByteArray manifestWith(const QJsonObject &changes, const QStringList &removed = {})
{
    QJsonObject manifest = validManifest;
    for (auto it = changes.begin(); it != changes.end(); ++it)
        manifest.insert(it.key(), it.value());
    for (const QString &key : removed)
        manifest.remove(key);
    return QJsonDocument(manifest).toJson();
}

struct DecodeCase
{
    const char *name;
    QByteArray json;
    bool decodes;
    std::optional<QString> notes = QString("Fixes.");
};

class ManifestDecodeTest : public testing::TestWithParam<DecodeCase>
{
};

TEST_P(ManifestDecodeTest, RequiresEveryKnownKeyWithItsType)
{
    const std::optional<ReleaseManifest> manifest = ReleaseManifest::decode(GetParam().json);
    ASSERT_EQ(manifest.has_value(), GetParam().decodes);
    if (manifest) {
        EXPECT_EQ(manifest->notes, GetParam().notes);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Update, ManifestDecodeTest,
    testing::Values(DecodeCase{"Complete", manifestWith({}), true},
                    DecodeCase{"UnknownKey", manifestWith({{"channel", "beta"}}), true},
                    DecodeCase{"NotesNull", manifestWith({{"notes", QJsonValue::Null}}), true, std::nullopt},
                    DecodeCase{"NotesMissing", manifestWith({}, {"notes"}), true, std::nullopt},
                    DecodeCase{"NotesNumber", manifestWith({{"notes", 3}}), false},
                    DecodeCase{"VersionMissing", manifestWith({}, {"version"}), false},
                    DecodeCase{"VersionNull", manifestWith({{"version", QJsonValue::Null}}), false},
                    DecodeCase{"VersionNumber", manifestWith({{"version", 1.3}}), false},
                    DecodeCase{"BuildText", manifestWith({{"build", "9"}}), false},
                    DecodeCase{"BuildFraction", manifestWith({{"build", 9.5}}), false},
                    DecodeCase{"IdentifierMissing", manifestWith({}, {"bundleIdentifier"}), false},
                    DecodeCase{"MinimumMissing", manifestWith({}, {"minimumSystemVersion"}), false},
                    DecodeCase{"ReleaseURLBoolean", manifestWith({{"releaseURL", true}}), false},
                    DecodeCase{"Array", "[]", false}, DecodeCase{"NotJson", "<html>", false}),
    ParamName());

const AppBuildInfo local{"1.2", 7, "26.0", "https://tolvar.app/update.json"};
const QUrl manifestAddress("https://tolvar.app/update.json");

LoadOutcome served(const QByteArray &body, int status = 200, const QUrl &url = manifestAddress)
{
    return LoadedResponse{body, url, status};
}

struct EvaluateCase
{
    const char *name;
    LoadOutcome loaded;
    UpdateCheckResult expected;
    QString systemVersion = "26.0.1";
};

class UpdateEvaluateTest : public testing::TestWithParam<EvaluateCase>
{
};

TEST_P(UpdateEvaluateTest, TrustsOnlyAWellFormedManifestForThisApplication)
{
    EXPECT_EQ(UpdateChecker::evaluate(GetParam().loaded, local, GetParam().systemVersion), GetParam().expected);
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

INSTANTIATE_TEST_SUITE_P(
    Update, UpdateEvaluateTest,
    testing::Values(
        EvaluateCase{"SameVersionHigherBuild", served(manifestWith({{"version", "1.2.0"}, {"build", 8}})),
                     availableWith({{"version", "1.2.0"}, {"build", 8}})},
        EvaluateCase{"SameVersionSameBuild", served(manifestWith({{"version", "1.2.0"}, {"build", 7}})),
                     UpdateCheckResult::of(Kind::UpToDate)},
        EvaluateCase{"LowerVersionHigherBuild", served(manifestWith({{"version", "1.1.9"}, {"build", 99}})),
                     UpdateCheckResult::of(Kind::LocalNewer)},
        EvaluateCase{"SameVersionLowerBuild", served(manifestWith({{"version", "1.2"}, {"build", 6}})),
                     UpdateCheckResult::of(Kind::LocalNewer)},
        EvaluateCase{"HigherVersionLowerBuild", served(manifestWith({{"version", "1.3"}, {"build", 1}})),
                     availableWith({{"version", "1.3"}, {"build", 1}})},
        EvaluateCase{"NeedsNewerSystem", served(manifestWith({{"minimumSystemVersion", "27"}})),
                     availableWith({{"minimumSystemVersion", "27"}}, true)},
        EvaluateCase{"LongestNotes", served(manifestWith({{"notes", longestNotes}})),
                     availableWith({{"notes", longestNotes}})},
        EvaluateCase{"TransportFailure", LoadOutcome(UpdateCheckFailure::of(Failure::Network)),
                     failed(Failure::Network)},
        EvaluateCase{"LoaderFailure", LoadOutcome(UpdateCheckFailure::of(Failure::InsecureRedirect)),
                     failed(Failure::InsecureRedirect)},
        EvaluateCase{"NotHttp", LoadOutcome(LoadedResponse{manifestWith({}), manifestAddress, std::nullopt}),
                     failed(Failure::InvalidResponse)},
        EvaluateCase{"FinalAddressPlainHttp", served(manifestWith({}), 200, QUrl("http://tolvar.app/update.json")),
                     failed(Failure::InsecureRedirect)},
        EvaluateCase{"NoFinalAddress", served(manifestWith({}), 200, QUrl()), failed(Failure::InsecureRedirect)},
        EvaluateCase{"NotFound", served({}, 404), UpdateCheckResult::failed(UpdateCheckFailure::http(404))},
        EvaluateCase{"NotModified", served({}, 304), UpdateCheckResult::failed(UpdateCheckFailure::http(304))},
        EvaluateCase{"BodyTooLarge", served(QByteArray(NetworkLoader::largestBody + 1, ' ')),
                     failed(Failure::ResponseTooLarge)},
        EvaluateCase{"Undecodable", served("{"), failed(Failure::InvalidManifest)},
        EvaluateCase{"IdentifierCase", served(manifestWith({{"bundleIdentifier", "App.Tolvar"}})),
                     failed(Failure::WrongApplication)},
        EvaluateCase{"BuildZero", served(manifestWith({{"build", 0}})), failed(Failure::InvalidManifest)},
        EvaluateCase{"VersionLetter", served(manifestWith({{"version", "1.3b1"}})), failed(Failure::InvalidManifest)},
        EvaluateCase{"MinimumLetter", served(manifestWith({{"minimumSystemVersion", "x"}})),
                     failed(Failure::InvalidManifest)},
        EvaluateCase{"ReleasePagePlainHttp", served(manifestWith({{"releaseURL", "http://tolvar.app/r"}})),
                     failed(Failure::InvalidManifest)},
        EvaluateCase{"NotesTooLong", served(manifestWith({{"notes", tooLongNotes}})),
                     failed(Failure::InvalidManifest)}),
    ParamName());

struct PrecheckCase
{
    const char *name;
    AppBuildInfo current;
    QString systemVersion;
    UpdateCheckResult expected;
};

class UpdatePrecheckTest : public testing::TestWithParam<PrecheckCase>
{
};

// Answers that need no network never reach the loader.
TEST_P(UpdatePrecheckTest, DecidesWithoutTheNetwork)
{
    int loads = 0;
    const UpdateChecker checker{GetParam().current, GetParam().systemVersion,
                                [&](const QNetworkRequest &, QObject *, auto) { ++loads; }};
    QObject context;
    QEventLoop loop;
    std::optional<UpdateCheckResult> result;
    checker.check(&context, [&](const UpdateCheckResult &r) {
        result = r;
        loop.quit();
    });
    EXPECT_FALSE(result) << "answered before returning";
    loop.exec();
    EXPECT_EQ(result, GetParam().expected);
    EXPECT_EQ(loads, 0);
}

AppBuildInfo localWith(std::optional<QString> version, std::optional<qint64> build, std::optional<QString> url)
{
    return AppBuildInfo{std::move(version), build, "26.0", std::move(url)};
}

const QString address = "https://tolvar.app/update.json";

INSTANTIATE_TEST_SUITE_P(
    Update, UpdatePrecheckTest,
    testing::Values(
        PrecheckCase{"NoAddress", localWith("1.2", 7, std::nullopt), "26.0", UpdateCheckResult::of(Kind::Unconfigured)},
        PrecheckCase{"EmptyAddress", localWith("1.2", 7, ""), "26.0", UpdateCheckResult::of(Kind::Unconfigured)},
        PrecheckCase{"PlainHttp", localWith("1.2", 7, "http://tolvar.app/u.json"), "26.0",
                     failed(Failure::InvalidSource)},
        PrecheckCase{"NoVersion", localWith(std::nullopt, 7, address), "26.0", failed(Failure::InvalidCurrentVersion)},
        PrecheckCase{"BadVersion", localWith("1.2-dev", 7, address), "26.0", failed(Failure::InvalidCurrentVersion)},
        PrecheckCase{"NoBuild", localWith("1.2", std::nullopt, address), "26.0",
                     failed(Failure::InvalidCurrentVersion)},
        PrecheckCase{"BuildZero", localWith("1.2", 0, address), "26.0", failed(Failure::InvalidCurrentVersion)},
        PrecheckCase{"BuildNegative", localWith("1.2", -3, address), "26.0", failed(Failure::InvalidCurrentVersion)},
        PrecheckCase{"SystemFiveNumbers", localWith("1.2", 7, address), "26.0.1.2.3",
                     failed(Failure::InvalidCurrentVersion)}),
    ParamName());

TEST(UpdateCheckTest, AsksTheLoaderForJsonAndJudgesItsAnswer)
{
    QNetworkRequest asked;
    const UpdateChecker checker{local, "26.0.1", [&](const QNetworkRequest &request, QObject *context, auto done) {
                                    asked = request;
                                    QMetaObject::invokeMethod(
                                        context, [done] { done(served(manifestWith({}))); }, Qt::QueuedConnection);
                                }};
    QObject context;
    QEventLoop loop;
    std::optional<UpdateCheckResult> result;
    checker.check(&context, [&](const UpdateCheckResult &r) {
        result = r;
        loop.quit();
    });
    loop.exec();
    EXPECT_EQ(result, availableWith({}));
    EXPECT_EQ(asked.url(), manifestAddress);
    EXPECT_EQ(asked.rawHeader("Accept"), "application/json");
    EXPECT_EQ(asked.rawHeader("Cache-Control"), "no-cache");
}

} // namespace
