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

// Runs a check to its end; a check that needs no network still answers from the event loop.
std::optional<UpdateCheckResult> check(const UpdateChecker &checker)
{
    QObject context;
    QEventLoop loop;
    std::optional<UpdateCheckResult> result;
    checker.check(&context, [&](const UpdateCheckResult &r) {
        result = r;
        loop.quit();
    });
    EXPECT_FALSE(result) << "answered before returning";
    loop.exec();
    return result;
}

struct EvaluateCase
{
    const char *name;
    LoadOutcome loaded;
    UpdateCheckResult expected;
};

using UpdateEvaluateTest = testing::TestWithParam<EvaluateCase>;

TEST_P(UpdateEvaluateTest, TrustsOnlyAWellFormedManifestForThisApplication)
{
    EXPECT_EQ(UpdateChecker::evaluate(GetParam().loaded, local, "26.0.1"), GetParam().expected);
}

const QString tooLongNotes(ReleaseManifest::maximumNotesLength + 1, u'x');
const QString longestNotes(ReleaseManifest::maximumNotesLength, u'x');
const UpdateCheckResult invalid = failed(Failure::InvalidManifest);

// clang-format off
INSTANTIATE_TEST_SUITE_P(Update, UpdateEvaluateTest, testing::Values(
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
    EvaluateCase{"LongestNotes", served(manifestWith({{"notes", longestNotes}})), availableWith({{"notes", longestNotes}})},
    EvaluateCase{"UnknownKey", served(manifestWith({{"channel", "beta"}})), availableWith({})},
    EvaluateCase{"NotesNull", served(manifestWith({{"notes", QJsonValue::Null}})), availableWith({{"notes", QJsonValue::Null}})},
    EvaluateCase{"NotesMissing", served(manifestWith({}, {"notes"})), availableWith({{"notes", QJsonValue::Null}})},
    EvaluateCase{"LoaderFailure", LoadOutcome(UpdateCheckFailure::of(Failure::Network)), failed(Failure::Network)},
    EvaluateCase{"NotHttp", LoadOutcome(LoadedResponse{manifestWith({}), manifestAddress, std::nullopt}),
                 failed(Failure::InvalidResponse)},
    EvaluateCase{"FinalAddressPlainHttp", served(manifestWith({}), QUrl("http://tolvar.app/update.json")),
                 failed(Failure::InsecureRedirect)},
    EvaluateCase{"NoFinalAddress", served(manifestWith({}), QUrl()), failed(Failure::InsecureRedirect)},
    EvaluateCase{"Undecodable", served("{"), invalid},
    EvaluateCase{"Array", served("[]"), invalid},
    EvaluateCase{"IdentifierCase", served(manifestWith({{"bundleIdentifier", "App.Tolvar"}})), failed(Failure::WrongApplication)},
    EvaluateCase{"IdentifierMissing", served(manifestWith({}, {"bundleIdentifier"})), invalid},
    EvaluateCase{"VersionMissing", served(manifestWith({}, {"version"})), invalid},
    EvaluateCase{"VersionNumber", served(manifestWith({{"version", 1.3}})), invalid},
    EvaluateCase{"VersionLetter", served(manifestWith({{"version", "1.3b1"}})), invalid},
    EvaluateCase{"BuildText", served(manifestWith({{"build", "9"}})), invalid},
    EvaluateCase{"BuildFraction", served(manifestWith({{"build", 9.5}})), invalid},
    EvaluateCase{"BuildZero", served(manifestWith({{"build", 0}})), invalid},
    EvaluateCase{"MinimumLetter", served(manifestWith({{"minimumSystemVersion", "x"}})), invalid},
    EvaluateCase{"NotesNumber", served(manifestWith({{"notes", 3}})), invalid},
    EvaluateCase{"NotesTooLong", served(manifestWith({{"notes", tooLongNotes}})), invalid},
    EvaluateCase{"ReleaseURLBoolean", served(manifestWith({{"releaseURL", true}})), invalid},
    EvaluateCase{"ReleasePagePlainHttp", served(manifestWith({{"releaseURL", "http://tolvar.app/r"}})), invalid}),
    ParamName());
// clang-format on

struct PrecheckCase
{
    const char *name;
    AppBuildInfo current;
    QString systemVersion;
    UpdateCheckResult expected;
};

using UpdatePrecheckTest = testing::TestWithParam<PrecheckCase>;

TEST_P(UpdatePrecheckTest, DecidesWithoutTheNetwork)
{
    int loads = 0;
    EXPECT_EQ(check({GetParam().current, GetParam().systemVersion,
                     [&](const QNetworkRequest &, QObject *, auto) { ++loads; }}),
              GetParam().expected);
    EXPECT_EQ(loads, 0);
}

AppBuildInfo localWith(std::optional<QString> version, std::optional<qint64> build, std::optional<QString> url)
{
    return AppBuildInfo{std::move(version), build, "26.0", std::move(url)};
}

const QString address = "https://tolvar.app/update.json";
const UpdateCheckResult badVersion = failed(Failure::InvalidCurrentVersion);

// clang-format off
INSTANTIATE_TEST_SUITE_P(Update, UpdatePrecheckTest, testing::Values(
    PrecheckCase{"NoAddress", localWith("1.2", 7, std::nullopt), "26.0", UpdateCheckResult::of(Kind::Unconfigured)},
    PrecheckCase{"EmptyAddress", localWith("1.2", 7, ""), "26.0", UpdateCheckResult::of(Kind::Unconfigured)},
    PrecheckCase{"PlainHttp", localWith("1.2", 7, "http://tolvar.app/u.json"), "26.0", failed(Failure::InvalidSource)},
    PrecheckCase{"NoVersion", localWith(std::nullopt, 7, address), "26.0", badVersion},
    PrecheckCase{"BadVersion", localWith("1.2-dev", 7, address), "26.0", badVersion},
    PrecheckCase{"NoBuild", localWith("1.2", std::nullopt, address), "26.0", badVersion},
    PrecheckCase{"BuildZero", localWith("1.2", 0, address), "26.0", badVersion},
    PrecheckCase{"BuildNegative", localWith("1.2", -3, address), "26.0", badVersion},
    PrecheckCase{"SystemFiveNumbers", localWith("1.2", 7, address), "26.0.1.2.3", badVersion}),
    ParamName());
// clang-format on

TEST(UpdateCheckTest, AsksTheLoaderForAFreshJsonDocument)
{
    QNetworkRequest asked;
    EXPECT_EQ(check({local, "26.0.1",
                     [&](const QNetworkRequest &request, QObject *context, auto done) {
                         asked = request;
                         QMetaObject::invokeMethod(
                             context, [done] { done(served(manifestWith({}))); }, Qt::QueuedConnection);
                     }}),
              availableWith({}));
    EXPECT_EQ(asked.url(), manifestAddress);
    EXPECT_EQ(asked.rawHeader("Accept"), "application/json");
    EXPECT_EQ(asked.rawHeader("Cache-Control"), "no-cache");
}

} // namespace
