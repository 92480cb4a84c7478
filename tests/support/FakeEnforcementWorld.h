#pragma once

#include "core/engine/EnforcementDependencies.h"

#include <QHash>
#include <QStringList>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

// A scriptable stand-in for the OS, the catalog, the configuration and the
// clock, shared by reference with the dependencies it hands out.
struct FakeEnforcementWorld
{
    struct Helper
    {
        QString id;
        bool automatic = false;
        EnforcementDependencies::FocusCompletion completion;
        int cancels = 0;
    };

    Config config{QStringLiteral("xkb:us::eng"), true, std::nullopt, true};
    bool secure = false;
    bool keymapHeld = false;
    std::optional<LocalizedText> unreachable;
    QString current = QStringLiteral("xkb:de::ger");
    // Selectable sources and whether each needs the focus helper.
    QHash<QString, bool> sources = {{"xkb:us::eng", false}, {"xkb:de::ger", false}, {"hangul", true}, {"anthy", true}};
    qint32 selectStatus = 0;
    bool selectTakesEffect = true;
    std::optional<QString> launchError;
    EnforcementDependencies::Clock::time_point clock{std::chrono::hours(1)};

    QStringList selected;
    std::vector<Helper> helpers;

    EnforcementDependencies dependencies()
    {
        EnforcementDependencies d;
        d.config = [this] { return config; };
        d.secureInput = [this] { return secure; };
        d.keymapHeld = [this] { return keymapHeld; };
        d.unreachable = [this] { return unreachable; };
        d.currentID = [this] { return current; };
        d.find = [this](const QString &id) -> std::optional<EnforcementTarget> {
            if (!sources.contains(id))
                return std::nullopt;
            return EnforcementTarget{id, sources.value(id)};
        };
        d.select = [this](const QString &id) {
            selected << id;
            if (selectStatus == 0 && selectTakesEffect)
                current = id;
            return selectStatus;
        };
        d.launchFocus = [this](const QString &id, bool automatic, EnforcementDependencies::FocusCompletion completion)
            -> Expected<EnforcementDependencies::CancelFocus> {
            if (launchError)
                return Error::other(*launchError);
            helpers.push_back({id, automatic, std::move(completion), 0});
            const size_t index = helpers.size() - 1;
            return EnforcementDependencies::CancelFocus([this, index] { ++helpers[index].cancels; });
        };
        d.now = [this] { return clock; };
        return d;
    }

    // Ends helper `index` as the child would, switching first when it succeeded.
    void finishHelper(size_t index, FocusProcessResult result, bool switched = true)
    {
        if (result == FocusProcessResult::exited(0) && switched)
            current = helpers.at(index).id;
        auto completion = std::exchange(helpers.at(index).completion, nullptr);
        ASSERT_TRUE(completion) << "helper reported twice";
        completion(result);
    }
};
