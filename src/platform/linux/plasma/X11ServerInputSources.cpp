#include "platform/linux/plasma/X11ServerInputSources.h"

#include "platform/linux/plasma/KxkbrcSettings.h"
#include "platform/linux/x11/X11Layout.h"

#include <memory>

namespace {

// The layouts of the settings, each set alone on the X server.
class ServerLayouts
{
public:
    explicit ServerLayouts(QString kxkbrc)
        : m_kxkbrc(std::move(kxkbrc))
    {}

    QList<SourceProperties> enabled(const QString &only = {}) const
    {
        QList<SourceProperties> sources;
        for (const auto &[id, names] : layouts()) {
            if (only.isEmpty() || id == only)
                sources << SourceProperties::keyboard(id, id);
        }
        return sources;
    }

    static QString currentID()
    {
        const std::optional<X11Layout::Names> now = X11Layout::current();
        if (!now || now->layout.isEmpty() || now->layout.contains(QLatin1Char(',')))
            return {};
        return now->variant.isEmpty() ? now->layout : now->layout + QLatin1Char('(') + now->variant + QLatin1Char(')');
    }

    qint32 select(const QString &id) const
    {
        for (const auto &[candidate, names] : layouts()) {
            if (candidate == id)
                return X11Layout::apply(names) ? 0 : InputSources::layoutNotApplied;
        }
        return InputSources::refused;
    }

    static InputSources::Availability availability()
    {
        return X11Layout::current() ? InputSources::Availability::available : InputSources::Availability::notRunning;
    }

private:
    QList<std::pair<QString, X11Layout::Names>> layouts() const
    {
        const KxkbrcSettings settings = KxkbrcSettings::read(m_kxkbrc);
        const QString options = settings.options.join(QLatin1Char(','));
        QList<std::pair<QString, X11Layout::Names>> layouts;
        for (qsizetype i = 0; i < settings.layouts.size(); ++i) {
            const QString &layout = settings.layouts.at(i);
            if (!layout.isEmpty())
                layouts.append({settings.id(i, layout), {layout, settings.variants.value(i), options}});
        }
        return layouts;
    }

    QString m_kxkbrc;
};

} // namespace

namespace X11ServerInputSources {

InputSources at(const QString &kxkbrc)
{
    const auto layouts = std::make_shared<ServerLayouts>(kxkbrc);
    InputSources sources{
        [layouts] { return layouts->enabled(); },
        [layouts](const QString &id) { return id.isEmpty() ? QList<SourceProperties>() : layouts->enabled(id); },
        [] { return ServerLayouts::currentID(); }, [layouts](const QString &id) { return layouts->select(id); },
        [] { return false; },
        [](QObject *context, std::function<void()> callback) {
            return X11Layout::observe(context, std::move(callback));
        },
        // Nothing tells of a changed kxkbrc: each call reads it afresh.
        [](QObject *, const std::function<void()> &) { return false; }, QStringLiteral("x11"), false};
    sources.availability = [] { return ServerLayouts::availability(); };
    return sources;
}

InputSources live()
{
    return at(KxkbrcSettings::path());
}

} // namespace X11ServerInputSources
