#include "core/update/UpdateChecker.h"

#include "core/update/NetworkLoader.h"
#include "core/update/NumericVersion.h"
#include "core/update/SecureURL.h"
#include "platform/OperatingSystem.h"

#include <QPointer>

namespace {

using Kind = UpdateCheckFailure::Kind;

bool validManifest(const ReleaseManifest &manifest)
{
    return NumericVersion::parse(manifest.version) && manifest.build >= 1
           && NumericVersion::parse(manifest.minimumSystemVersion) && secureURL(manifest.releaseURL)
           && (!manifest.notes
               || ReleaseManifest::characterCount(*manifest.notes) <= ReleaseManifest::maximumNotesLength);
}

} // namespace

UpdateChecker UpdateChecker::make(AppBuildInfo current, std::optional<QString> systemVersion, UpdateLoader load)
{
    return {std::move(current), systemVersion.value_or(OperatingSystem::version()),
            load ? std::move(load) : NetworkLoader::make()};
}

void UpdateChecker::check(QObject *context, std::function<void(const UpdateCheckResult &)> done) const
{
    auto prepared = prepare(current, systemVersion);
    if (const auto *decided = std::get_if<UpdateCheckResult>(&prepared)) {
        QMetaObject::invokeMethod(
            context, [done, result = *decided] { done(result); }, Qt::QueuedConnection);
        return;
    }
    load(std::get<QNetworkRequest>(prepared), context,
         [done, current = current, systemVersion = systemVersion](const LoadOutcome &loaded) {
             done(evaluate(loaded, current, systemVersion));
         });
}

std::variant<UpdateCheckResult, QNetworkRequest> UpdateChecker::prepare(const AppBuildInfo &current,
                                                                        const QString &systemVersion)
{
    if (!current.updateURL || current.updateURL->isEmpty())
        return UpdateCheckResult::of(UpdateCheckResult::Kind::Unconfigured);
    const std::optional<QUrl> url = secureURL(*current.updateURL);
    if (!url)
        return UpdateCheckResult::failed(Kind::InvalidSource);
    if (!current.version || !NumericVersion::parse(*current.version) || !current.build || *current.build < 1
        || !NumericVersion::parse(systemVersion))
        return UpdateCheckResult::failed(Kind::InvalidCurrentVersion);

    QNetworkRequest request(*url);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setTransferTimeout(12000);
    request.setRawHeader("Accept", "application/json");
    request.setRawHeader("Cache-Control", "no-cache");
    return request;
}

UpdateCheckResult UpdateChecker::evaluate(const LoadOutcome &loaded, const AppBuildInfo &current,
                                          const QString &systemVersion)
{
    if (!loaded)
        return UpdateCheckResult::failed(loaded.error());
    const LoadedResponse &response = loaded.value();
    if (!response.status)
        return UpdateCheckResult::failed(Kind::InvalidResponse);
    // Repeats the redirect rule for loaders that follow redirects themselves.
    if (response.url.isEmpty() || !secureURL(response.url.toString(QUrl::FullyEncoded)))
        return UpdateCheckResult::failed(Kind::InsecureRedirect);
    if (*response.status != 200)
        return UpdateCheckResult::failed(UpdateCheckFailure::http(*response.status));
    if (response.body.size() > NetworkLoader::largestBody)
        return UpdateCheckResult::failed(Kind::ResponseTooLarge);
    const std::optional<ReleaseManifest> manifest = ReleaseManifest::decode(response.body);
    if (!manifest)
        return UpdateCheckResult::failed(Kind::InvalidManifest);
    if (manifest->bundleIdentifier != bundleIdentifier)
        return UpdateCheckResult::failed(Kind::WrongApplication);
    if (!validManifest(*manifest))
        return UpdateCheckResult::failed(Kind::InvalidManifest);

    const std::optional<NumericVersion> parsedLocal = NumericVersion::parse(current.version.value_or(QString()));
    if (!parsedLocal || current.build.value_or(0) < 1)
        return UpdateCheckResult::failed(Kind::InvalidCurrentVersion);
    const NumericVersion &local = *parsedLocal;
    const NumericVersion remote = *NumericVersion::parse(manifest->version);
    const qint64 localBuild = *current.build;
    const bool sameVersion = !(local < remote) && !(remote < local);
    if (local < remote || (sameVersion && localBuild < manifest->build)) {
        const std::optional<NumericVersion> system = NumericVersion::parse(systemVersion);
        const std::optional<NumericVersion> minimum = NumericVersion::parse(manifest->minimumSystemVersion);
        return UpdateCheckResult::available(*manifest, system && minimum && *system < *minimum);
    }
    if (remote < local || (sameVersion && manifest->build < localBuild))
        return UpdateCheckResult::of(UpdateCheckResult::Kind::LocalNewer);
    return UpdateCheckResult::of(UpdateCheckResult::Kind::UpToDate);
}
