#include "platform/linux/IBusEngineDesc.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QStringList>
#include <QUrl>

namespace IBusEngineDesc {
namespace {

// Positions in the serialized struct; the first two belong to every
// serialized IBus object.
enum Field { TypeName = 0, Name = 2, LongName = 3, Language = 5, Icon = 8, Layout = 9, Variant = 14, Option = 15 };

const QString typeName = QStringLiteral("IBusEngineDesc");

std::optional<QVariantList> fieldsOf(const QVariant &value)
{
    const QVariant inner = unwrap(value);
    if (inner.metaType() != QMetaType::fromType<QDBusArgument>())
        return std::nullopt;
    const QDBusArgument argument = inner.value<QDBusArgument>();
    if (argument.currentType() != QDBusArgument::StructureType)
        return std::nullopt;

    QVariantList fields;
    argument.beginStructure();
    while (!argument.atEnd())
        fields << argument.asVariant();
    argument.endStructure();
    if (fields.value(TypeName) != QVariant(typeName))
        return std::nullopt;
    return fields;
}

// IBus names one language per engine; an empty one is none.
QVariant languagesOf(const QVariant &language)
{
    if (language.metaType() != QMetaType::fromType<QString>())
        return language;
    const QString code = language.toString();
    return code.isEmpty() ? QStringList() : QStringList{code};
}

// IBus's icon is a file path or the name of a themed icon.
void setIcon(SourceProperties &properties, const QVariant &icon)
{
    if (!icon.isValid())
        return;
    if (icon.metaType() != QMetaType::fromType<QString>()) {
        properties.iconReference = icon;
        return;
    }
    const QString text = icon.toString();
    if (text.startsWith(QLatin1Char('/')))
        properties.iconURL = QUrl::fromLocalFile(text);
    else if (text.startsWith(QLatin1String("file:")))
        properties.iconURL = QUrl(text);
    else if (!text.isEmpty())
        properties.iconReference = text;
}

} // namespace

std::optional<SourceProperties> properties(const QVariant &value)
{
    const std::optional<QVariantList> fields = fieldsOf(value);
    if (!fields)
        return std::nullopt;
    SourceProperties result;
    result.id = fields->value(Name);
    result.localizedName = fields->value(LongName);
    result.languages = languagesOf(fields->value(Language));
    setIcon(result, fields->value(Icon));
    // Every IBus engine is a keyboard source that can be selected.
    result.selectCapable = true;
    result.category = SourceProperties::keyboardCategory;
    return result;
}

QString name(const QVariant &value)
{
    const std::optional<QVariantList> fields = fieldsOf(value);
    if (!fields)
        return {};
    const QVariant field = fields->value(Name);
    return field.metaType() == QMetaType::fromType<QString>() ? field.toString() : QString();
}

std::optional<X11Layout::Names> layout(const QVariant &value)
{
    const std::optional<QVariantList> fields = fieldsOf(value);
    if (!fields)
        return std::nullopt;
    const auto text = [&](Field field) {
        const QVariant v = fields->value(field);
        return v.metaType() == QMetaType::fromType<QString>() ? v.toString() : QString();
    };
    return X11Layout::Names{text(Layout), text(Variant), text(Option)};
}

QVariant unwrap(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace IBusEngineDesc
