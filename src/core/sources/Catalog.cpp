#include "core/sources/Catalog.h"

namespace Catalog {
namespace {

bool isTrue(const QVariant &value)
{
    return value.metaType() == QMetaType::fromType<bool>() && value.toBool();
}

bool isSelectable(const SourceProperties &properties)
{
    const QVariant &category = properties.category;
    return isTrue(properties.enabled) && isTrue(properties.selectCapable)
           && category.metaType() == QMetaType::fromType<QString>()
           && category.toString() == SourceProperties::keyboardCategory;
}

} // namespace

QList<Source> selectable(const InputSources &system)
{
    QList<Source> sources;
    for (const SourceProperties &properties : system.enabled()) {
        if (isSelectable(properties))
            sources << Source(properties);
    }
    return sources;
}

QList<InputChoice> choices(const InputSources &system)
{
    QList<InputChoice> result;
    for (const Source &source : selectable(system))
        result << InputChoice{source.id(), source.name()};
    return result;
}

InputChoice current(const InputSources &system)
{
    const QString id = system.currentID();
    if (id.isEmpty())
        return {};
    for (const SourceProperties &properties : system.matching(id)) {
        if (properties.localizedName.metaType() == QMetaType::fromType<QString>())
            return {id, properties.localizedName.toString()};
    }
    return {id, QString()};
}

std::optional<Source> find(const QString &id, const InputSources &system)
{
    for (const SourceProperties &properties : system.matching(id)) {
        Source source(properties);
        if (isSelectable(properties) && source.id() == id)
            return source;
    }
    return std::nullopt;
}

} // namespace Catalog
