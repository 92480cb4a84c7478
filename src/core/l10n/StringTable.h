#pragma once

#include <QHash>
#include <QString>

#include <optional>

// One language's texts, keyed by dotted names ("warn.switch"). Stored as a flat
// JSON object in <resources>/l10n/<code>.json; placeholders are %1, %2, ...
class StringTable
{
public:
    explicit StringTable(QHash<QString, QString> texts = {})
        : m_texts(std::move(texts))
    {}

    // Absent when the file is missing or is not a JSON object.
    static std::optional<StringTable> load(const QString &resourceDirectory, const QString &code);
    static QString pathFor(const QString &resourceDirectory, const QString &code);

    std::optional<QString> text(const QString &key) const;
    QList<QString> keys() const { return m_texts.keys(); }

private:
    QHash<QString, QString> m_texts;
};
