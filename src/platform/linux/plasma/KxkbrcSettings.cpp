#include "platform/linux/plasma/KxkbrcSettings.h"

#include <QSettings>
#include <QStandardPaths>

KxkbrcSettings KxkbrcSettings::read(const QString &file)
{
    const QSettings settings(file, QSettings::IniFormat);
    return {settings.value(QStringLiteral("Layout/LayoutList")).toStringList(),
            settings.value(QStringLiteral("Layout/VariantList")).toStringList(),
            settings.value(QStringLiteral("Layout/Options")).toStringList()};
}

QString KxkbrcSettings::path()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/kxkbrc");
}

QString KxkbrcSettings::id(qsizetype index, const QString &shortName) const
{
    const QString variant = layouts.value(index) == shortName ? variants.value(index) : QString();
    return variant.isEmpty() ? shortName : shortName + QLatin1Char('(') + variant + QLatin1Char(')');
}
