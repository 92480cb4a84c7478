#pragma once

#include "app/model/AppServices.h"

#include <QStringList>
#include <QThreadPool>

#include <atomic>
#include <vector>

// A scriptable world behind the services it hands out. The login item is used
// on worker threads; everything else only on the main thread. Neither the
// keyboard settings nor the browser is expected.
struct FakeAppWorld
{
    std::optional<Config> config = Config{
        .sourceID = QStringLiteral("xkb:us::eng"), .enabled = true, .onboardingCompleted = true}; // none: no file
    bool unreadable = false;
    QList<InputChoice> sources = {{QStringLiteral("xkb:us::eng"), QStringLiteral("English (US)")},
                                  {QStringLiteral("xkb:de::deu"), QStringLiteral("German")},
                                  {QStringLiteral("hangul"), QStringLiteral("Hangul")}};
    InputChoice current = sources.first();
    bool secure = false;
    InputSources::Availability availability = InputSources::Availability::available;
    std::atomic<bool> login = false;
    std::optional<QString> loginError;

    // Set: the keeper ends a manual switch at once, as the engine does for a
    // layout, having said first that the world changed.
    std::optional<SwitchOutcome> appliesAtOnce;
    std::function<void()> keeperUpdate;

    QList<DoctorCheck> checks;
    QStringList calls; // main-thread services, in call order
    std::vector<AppServices::Completion> applies;

    template <typename T> T noted(const char *call, T value)
    {
        calls << QString::fromLatin1(call);
        return value;
    }

    AppServices services()
    {
        AppServices s;
        s.load = [this]() -> Expected<Config> {
            if (noted("load", unreadable))
                return Error::decode(QStringLiteral("not JSON"));
            return config.value_or(Config{});
        };
        s.updateConfig = [this](const ConfigStore::Edit &edit) -> Expected<Config> {
            noted("update", 0);
            Config edited = config.value_or(Config{});
            edit(edited);
            config = edited;
            return edited;
        };
        s.choices = [this] { return noted("choices", sources); };
        s.current = [this] { return noted("current", current); };
        s.secureInput = [this] { return secure; };
        s.sourceIcon = [](const QString &) { return std::optional<QImage>(); };
        s.availability = [this] { return noted("availability", availability); };
        s.framework = QStringLiteral("IBus");
        s.checkComputer = [this] { return noted("checks", checks); };
        keeperAndLogin(s);
        return s;
    }

    // A keeper that records what it is asked, and a login item in memory.
    void keeperAndLogin(AppServices &s)
    {
        s.startKeeper = [this](std::function<void()> onUpdate, AppServices::Completion) {
            keeperUpdate = std::move(onUpdate);
        };
        s.apply = [this](AppServices::Completion completion) {
            applies.push_back(noted("apply", completion));
            if (appliesAtOnce) {
                keeperUpdate();
                completion(*appliesAtOnce);
            }
        };
        s.isSwitching = [] { return false; };
        s.cancelSwitch = [this] { noted("cancelSwitch", 0); };
        s.loginEnabled = [this] { return login.load(); };
        s.setLogin = [this](bool on) -> Expected<void> {
            if (loginError)
                return Error::other(*loginError);
            login = on;
            return {};
        };
        s.background = [](std::function<void()> work) { QThreadPool::globalInstance()->start(std::move(work)); };
    }
};
