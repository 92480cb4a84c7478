#pragma once

#include "core/config/Config.h"
#include "core/sources/InputChoice.h"
#include "core/sources/SwitchOutcome.h"

#include <QList>
#include <QString>

#include <chrono>
#include <optional>

// A desktop held in memory, as a screenshot shows it. AppServices::preview()
// runs the model on one, and a scene may change it as it goes.
struct PreviewWorld
{
    struct Source
    {
        InputChoice choice;
        // What its menu-bar image shows.
        QString symbol;
    };

    QList<Source> sources;
    // None: no configuration file yet.
    std::optional<Config> config;
    QString current;
    // The language the picture is taken in, which every read of the configuration names.
    std::optional<QString> language;
    bool unreadable = false;
    bool secure = false;
    bool login = false;
    // How long a change of the login item takes; one that takes a while runs off the main thread.
    std::chrono::milliseconds loginTakes{0};
    // What a manual switch ends in; none leaves it running.
    std::optional<SwitchOutcome> applyOutcome = SwitchOutcome::success();
};
