// The About page in every state of its update result.
#include "Scene.h"

#include "app/about/AboutPage.h"
#include "app/about/UpdateViewModel.h"

namespace {

using State = UpdateViewModel::State;
using Kind = UpdateCheckResult::Kind;
using Failure = UpdateCheckFailure::Kind;

const AppBuildInfo released{QStringLiteral("1.2"), 7, QStringLiteral("6.1"),
                            QStringLiteral("https://tolvar.app/update.json")};

QWidget *page(const AppBuildInfo &info, std::optional<State> state = std::nullopt)
{
    // Never loads: the scenes set their state directly.
    const UpdateLoader none = [](const QNetworkRequest &, QObject *, auto) {};
    return new AboutPage(new UpdateViewModel(UpdateChecker::make(info, QStringLiteral("6.1.0"), none), state), {});
}

ReleaseManifest release(std::optional<QString> notes)
{
    return {QStringLiteral("app.tolvar"),           QStringLiteral("1.3"), 9, QStringLiteral("6.8"),
            QStringLiteral("https://tolvar.app/r"), std::move(notes)};
}

QWidget *sheetOf(const QList<std::pair<QString, State>> &states)
{
    SceneSheet sheet;
    for (const auto &[caption, state] : states) {
        sheet.caption(caption);
        sheet.add(page(released, state));
    }
    return sheet.widget();
}

QWidget *alone(QWidget *part)
{
    SceneSheet sheet;
    sheet.add(part);
    return sheet.widget();
}

const Scene::Registration idle("about", [](const Scene::Context &) { return alone(page(released)); });

const Scene::Registration unconfigured("about-unconfigured", [](const Scene::Context &) {
    return alone(page({std::nullopt, std::nullopt, QStringLiteral("6.1"), std::nullopt}));
});

const Scene::Registration results("about-results", [](const Scene::Context &) {
    return sheetOf({{QStringLiteral("Checking"), State::checking()},
                    {QStringLiteral("Up to date"), State::of(UpdateCheckResult::of(Kind::UpToDate))},
                    {QStringLiteral("This copy is newer"), State::of(UpdateCheckResult::of(Kind::LocalNewer))}});
});

const Scene::Registration failures("about-failures", [](const Scene::Context &) {
    return sheetOf(
        {{QStringLiteral("No network"), State::of(UpdateCheckResult::failed(Failure::Network))},
         {QStringLiteral("HTTP 404"), State::of(UpdateCheckResult::failed(UpdateCheckFailure::http(404)))},
         {QStringLiteral("Insecure redirect"), State::of(UpdateCheckResult::failed(Failure::InsecureRedirect))}});
});

const Scene::Registration available("about-available", [](const Scene::Context &) {
    return sheetOf(
        {{QStringLiteral("Newer release"), State::of(UpdateCheckResult::available(release(std::nullopt), false))},
         {QStringLiteral("Newer release with notes, needs a newer system"),
          State::of(UpdateCheckResult::available(
              release(QStringLiteral("  Follows the pinned source on every desktop.\nFaster switching.\n ")), true))}});
});

} // namespace
