#include "core/l10n/StringTable.h"

#include "platform/files/FileBytes.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

std::optional<StringTable> StringTable::load(const QString &resourceDirectory, const QString &code)
{
    const Expected<QByteArray> bytes = FileBytes::read(pathFor(resourceDirectory, code));
    if (!bytes)
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(bytes.value());
    if (!document.isObject())
        return std::nullopt;

    StringTable table;
    const QJsonObject object = document.object();
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it.value().isString())
            table.m_texts.insert(it.key(), it.value().toString());
    }
    return table;
}

QString StringTable::pathFor(const QString &resourceDirectory, const QString &code)
{
    return QDir(resourceDirectory).filePath(QStringLiteral("l10n/%1.json").arg(code));
}

std::optional<QString> StringTable::text(const QString &key) const
{
    const auto it = m_texts.constFind(key);
    if (it == m_texts.constEnd())
        return std::nullopt;
    return *it;
}
