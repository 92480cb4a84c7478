// The application model on a desktop held in memory, for screenshots: its
// configuration in memory, a keeper that does nothing, the login item at once.
// Nothing outside the process is touched.
#include "app/model/AppServices.h"
#include "app/model/PreviewWorld.h"
#include "core/sources/SourceIcon.h"

#include <QThread>
#include <QThreadPool>

namespace {

const PreviewWorld::Source *find(const PreviewWorld &world, const QString &id)
{
    for (const PreviewWorld::Source &source : world.sources) {
        if (source.choice.id == id)
            return &source;
    }
    return nullptr;
}

} // namespace

AppServices AppServices::preview(const std::shared_ptr<PreviewWorld> &world)
{
    AppServices s;
    s.load = [world]() -> Expected<Config> {
        if (world->unreadable)
            return Error::decode(QStringLiteral("not JSON"));
        Config stored = world->config.value_or(Config{});
        stored.language = world->language;
        return stored;
    };
    s.updateConfig = [world](const ConfigStore::Edit &edit) -> Expected<Config> {
        Config stored = world->config.value_or(Config{});
        if (const Expected<void> edited = edit(stored); !edited)
            return edited.error();
        world->config = stored;
        return stored;
    };
    s.choices = [world] {
        QList<InputChoice> choices;
        for (const PreviewWorld::Source &source : world->sources)
            choices << source.choice;
        return choices;
    };
    s.current = [world] {
        const PreviewWorld::Source *source = find(*world, world->current);
        return source ? source->choice : InputChoice{};
    };
    s.secureInput = [world] { return world->secure; };
    s.sourceIcon = [world](const QString &id) -> std::optional<QImage> {
        const PreviewWorld::Source *source = find(*world, id);
        return source ? SourceIcon::fromSymbol(source->symbol) : std::nullopt;
    };
    s.startKeeper = [](std::function<void()>, Completion) {};
    s.apply = [world](const Completion &completion) {
        if (world->applyOutcome)
            completion(*world->applyOutcome);
    };
    s.isSwitching = [] { return false; };
    s.cancelSwitch = [] {};
    s.loginEnabled = [world] { return world->login; };
    s.setLogin = [world](bool on) -> Expected<void> {
        QThread::msleep(static_cast<unsigned long>(world->loginTakes.count()));
        world->login = on;
        return {};
    };
    s.background = [world](std::function<void()> work) {
        if (world->loginTakes.count() > 0)
            QThreadPool::globalInstance()->start(std::move(work));
        else
            work();
    };
    s.openKeyboardSettings = [] { return true; };
    s.openAddress = [](const QUrl &) {};
    return s;
}
