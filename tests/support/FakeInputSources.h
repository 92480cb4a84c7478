#pragma once

#include "platform/InputSources.h"

#include <QList>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

// An input-source system held in memory. Whatever a test puts in `sources` is
// what the system reports, odd properties included; selecting a known source
// makes it current and announces the change.
class FakeInputSources
{
public:
    struct Observer
    {
        QPointer<QObject> context;
        std::function<void()> callback;
    };

    struct State
    {
        QList<SourceProperties> sources;
        QString current;
        // When set, every select answers this status and changes nothing.
        std::optional<qint32> selectStatus;
        bool secureInput = false;
        QStringList selected;
        QList<Observer> selectionObservers;
        QList<Observer> enabledObservers;
    };

    std::shared_ptr<State> state = std::make_shared<State>();

    InputSources port() const;

    // An enabled, selectable keyboard source with every property present.
    static SourceProperties keyboard(const QString &id, const QString &name, const QStringList &languages = {});

    // Calls the observers later on their contexts' threads, as the system would.
    void announceSelection() const;
    void announceEnabled() const;
};
