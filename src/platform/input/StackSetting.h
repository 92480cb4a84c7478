#pragma once

#include <QString>

// One of the input stack's own settings that bears on keeping a source, as read.
struct StackSetting
{
    enum class Effect {
        none,
        // The stack switches sources by itself, per window or per application.
        switchesPerWindow,
        // IBus keeps the system's keyboard layout rather than the engine's.
        keepsSystemLayout,
    };

    enum class Concern { switching, layout };

    // Where it is kept, such as "org.gnome.desktop.input-sources per-window".
    QString name;
    QString value;
    Effect effect = Effect::none;
    // What it bears on: which source is current, or which keyboard layout applies.
    Concern concern = Concern::switching;

    bool operator==(const StackSetting &) const = default;
};
