#pragma once

#include "app/model/AppServices.h"

#include <QStringList>
#include <QThreadPool>

#include <atomic>
#include <vector>

// A scriptable world behind the services it hands out. The login item is used
// on worker threads; everything else only on the main thread.
struct FakeAppWorld
{
    std::optional<Config> config = Config{QStringLiteral("xkb:us::eng"), true, std::nullopt, true}; // none: no file
    bool unreadable = false;
    std::optional<QString> writeError;
    QList<InputChoice> sources = {{QStringLiteral("xkb:us::eng"), QStringLiteral("English (US)")},
                                  {QStringLiteral("xkb:de::deu"), QStringLiteral("German")},
                                  {QStringLiteral("hangul"), QStringLiteral("Hangul")}};
    InputChoice current = sources.first();
    bool secure = false;
    InputSources::Availability availability = InputSources::Availability::available;
    std::atomic<bool> login = false;
    std::optional<QString> loginError;

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
            if (noted("update", writeError))
                return Error::other(*writeError);
            Config edited = config.value_or(Config{});
            edit(edited);
            config = edited;
            return edited;
        };
        s.choices = [this] { return noted("choices", sources); };
        s.current = [this] { return noted("current", current); };
        s.secureInput = [this] { return noted("secureInput", secure); };
        s.sourceIcon = [](const QString &) { return std::optional<QImage>(); };
        s.availability = [this] { return noted("availability", availability); };
        s.framework = QStringLiteral("IBus");
        keeperAndLogin(s);
        return s;
    }

    // A keeper that records what it is asked, and a login item in memory.
    void keeperAndLogin(AppServices &s)
    {
        s.startKeeper = [this](std::function<void()>, AppServices::Completion) { noted("startKeeper", 0); };
        s.apply = [this](AppServices::Completion completion) {
            applies.push_back(noted("apply", std::move(completion)));
        };
        s.isSwitching = [this] { return noted("isSwitching", false); };
        s.cancelSwitch = [this] { noted("cancelSwitch", 0); };
        s.loginEnabled = [this] { return login.load(); };
        s.setLogin = [this](bool on) -> Expected<void> {
            if (loginError)
                return Error::other(*loginError);
            login = on;
            return {};
        };
        s.background = [](std::function<void()> work) { QThreadPool::globalInstance()->start(std::move(work)); };
        s.openKeyboardSettings = [this] { return noted("openKeyboardSettings", true); };
        s.openAddress = [this](const QUrl &) { noted("openAddress", 0); };
    }
};
