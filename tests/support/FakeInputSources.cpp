#include "support/FakeInputSources.h"

#include <QMetaObject>
#include <QObject>

namespace {

void announce(const QList<FakeInputSources::Observer> &observers)
{
    for (const FakeInputSources::Observer &observer : observers) {
        if (observer.context)
            QMetaObject::invokeMethod(observer.context, observer.callback, Qt::QueuedConnection);
    }
}

bool hasID(const SourceProperties &source, const QString &id)
{
    return source.id.metaType() == QMetaType::fromType<QString>() && source.id.toString() == id;
}

} // namespace

InputSources FakeInputSources::port() const
{
    const std::shared_ptr<State> s = state;
    return {[s] { return s->sources; },
            [s](const QString &id) {
                QList<SourceProperties> found;
                for (const SourceProperties &source : std::as_const(s->sources)) {
                    if (hasID(source, id))
                        found << source;
                }
                return found;
            },
            [s] { return s->current; },
            [s](const QString &id) {
                s->selected << id;
                if (s->selectStatus)
                    return *s->selectStatus;
                for (const SourceProperties &source : std::as_const(s->sources)) {
                    if (hasID(source, id)) {
                        s->current = id;
                        announce(s->selectionObservers);
                        return 0;
                    }
                }
                return InputSources::refused;
            },
            [s] { return s->secureInput; },
            [s](QObject *context, std::function<void()> callback) {
                s->selectionObservers << Observer{context, std::move(callback)};
                return true;
            },
            [s](QObject *context, std::function<void()> callback) {
                s->enabledObservers << Observer{context, std::move(callback)};
                return true;
            }};
}

SourceProperties FakeInputSources::keyboard(const QString &id, const QString &name, const QStringList &languages)
{
    SourceProperties source;
    source.id = id;
    source.localizedName = name;
    source.enabled = true;
    source.selectCapable = true;
    source.category = SourceProperties::keyboardCategory;
    source.languages = languages;
    return source;
}

void FakeInputSources::announceSelection() const
{
    announce(state->selectionObservers);
}

void FakeInputSources::announceEnabled() const
{
    announce(state->enabledObservers);
}
