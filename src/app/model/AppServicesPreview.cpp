// A world in memory for screenshots: the model behaves as on a desktop with a
// few layouts and input methods, and nothing outside the process is touched.
#include "app/model/AppServices.h"
#include "core/sources/SourceIcon.h"

#include <QHash>

#include <memory>

namespace {

struct PreviewWorld
{
    QList<InputChoice> sources = {
        {QStringLiteral("xkb:us::eng"), QStringLiteral("English (US)")},
        {QStringLiteral("xkb:de::deu"), QStringLiteral("German")},
        {QStringLiteral("hangul"), QStringLiteral("Korean (Hangul)")},
        {QStringLiteral("anthy"), QStringLiteral("Japanese (Anthy)")},
        {QStringLiteral("libpinyin"), QStringLiteral("Chinese (Pinyin)")},
    };
    QHash<QString, QString> symbols = {
        {QStringLiteral("xkb:us::eng"), QStringLiteral("EN")}, {QStringLiteral("xkb:de::deu"), QStringLiteral("DE")},
        {QStringLiteral("hangul"), QStringLiteral("한")},      {QStringLiteral("anthy"), QStringLiteral("あ")},
        {QStringLiteral("libpinyin"), QStringLiteral("拼")},
    };
    Config config{QStringLiteral("hangul"), true, std::nullopt, true};
    QString current = QStringLiteral("hangul");
    bool login = true;

    InputChoice currentChoice() const
    {
        for (const InputChoice &choice : sources) {
            if (choice.id == current)
                return choice;
        }
        return {};
    }
};

} // namespace

AppServices AppServices::preview()
{
    const auto world = std::make_shared<PreviewWorld>();
    AppServices s;
    s.load = [world]() -> Expected<Config> { return world->config; };
    s.save = [world](const Config &config) -> Expected<void> {
        world->config = config;
        return {};
    };
    s.choices = [world] { return world->sources; };
    s.current = [world] { return world->currentChoice(); };
    s.loginEnabled = [world] { return world->login; };
    s.setLogin = [world](bool on) -> Expected<void> {
        world->login = on;
        return {};
    };
    // Switches at once, as a quick engine would.
    s.apply = [world](const Completion &completion) {
        if (world->config.sourceID)
            world->current = *world->config.sourceID;
        completion(SwitchOutcome::success());
    };
    s.secureInput = [] { return false; };
    s.isSwitching = [] { return false; };
    s.cancelSwitch = [] {};
    s.sourceIcon = [world](const QString &id) { return SourceIcon::fromSymbol(world->symbols.value(id)); };
    return s;
}
