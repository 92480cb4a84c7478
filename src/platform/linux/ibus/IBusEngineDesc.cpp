#include "platform/linux/ibus/IBusEngineDesc.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QStringList>
#include <QUrl>

namespace IBusEngineDesc {
namespace {

// Positions in the serialized struct; the first two belong to every
// serialized IBus object.
enum Field {
    TypeName = 0,
    Name = 2,
    LongName = 3,
    Language = 5,
    Icon = 8,
    Layout = 9,
    Symbol = 12,
    Variant = 14,
    Option = 15
};

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

// The engine's own short label, else its language in capitals ("EN" for
// "en", "ZH" for "zh_CN"); none when it has neither.
QVariant symbolOf(const QVariant &symbol, const QVariant &language)
{
    if (symbol.metaType() == QMetaType::fromType<QString>() && !symbol.toString().trimmed().isEmpty())
        return symbol.toString().trimmed();
    if (language.metaType() != QMetaType::fromType<QString>())
        return {};
    const QString code = language.toString().section(QLatin1Char('_'), 0, 0).section(QLatin1Char('-'), 0, 0);
    return code.isEmpty() ? QVariant() : QVariant(code.toUpper());
}

bool isLayout(const QVariant &name)
{
    return name.metaType() == QMetaType::fromType<QString>() && name.toString().startsWith(QLatin1String("xkb:"));
}

SourceProperties propertiesOf(const QVariantList &fields)
{
    SourceProperties result;
    result.id = fields.value(Name);
    result.localizedName = fields.value(LongName);
    result.languages = languagesOf(fields.value(Language));
    setIcon(result, fields.value(Icon));
    // Every layout carries the same generic keyboard icon; like IBus's own
    // panel, show layouts by their label so that they can be told apart.
    if (isLayout(result.id))
        result.iconReference = QVariant();
    result.symbol = symbolOf(fields.value(Symbol), fields.value(Language));
    // Every IBus engine is a keyboard source that can be selected.
    result.selectCapable = true;
    result.category = SourceProperties::keyboardCategory;
    return result;
}

X11Layout::Names layoutOf(const QVariantList &fields)
{
    const auto text = [&](Field field) {
        const QVariant v = fields.value(field);
        return v.metaType() == QMetaType::fromType<QString>() ? v.toString() : QString();
    };
    return X11Layout::Names{text(Layout), text(Variant), text(Option)};
}

} // namespace

std::optional<SourceProperties> properties(const QVariant &value)
{
    const std::optional<QVariantList> fields = fieldsOf(value);
    if (!fields)
        return std::nullopt;
    return propertiesOf(*fields);
}

std::optional<Engine> engine(const QVariant &value)
{
    const std::optional<QVariantList> fields = fieldsOf(value);
    if (!fields)
        return std::nullopt;
    return Engine{propertiesOf(*fields), layoutOf(*fields)};
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
    return layoutOf(*fields);
}

QVariant unwrap(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace IBusEngineDesc
