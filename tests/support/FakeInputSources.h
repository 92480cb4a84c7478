#pragma once

#include "platform/input/InputSources.h"

#include <QStringList>

// An input-source system that reports exactly `sources`, odd properties included.
struct FakeInputSources
{
    QList<SourceProperties> sources;

    InputSources port() const
    {
        InputSources port = InputSources::none();
        port.enabled = [s = sources] { return s; };
        port.matching = [s = sources](const QString &id) {
            QList<SourceProperties> found;
            for (const SourceProperties &source : s) {
                if (source.id.metaType() == QMetaType::fromType<QString>() && source.id.toString() == id)
                    found << source;
            }
            return found;
        };
        return port;
    }

    // An enabled, selectable keyboard source with every property present.
    static SourceProperties keyboard(const QString &id, const QString &name, const QStringList &languages = {})
    {
        SourceProperties source = SourceProperties::keyboard(id, name);
        source.languages = languages;
        return source;
    }
};
