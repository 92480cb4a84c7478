#pragma once

#include <QString>
#include <QStringList>

// A text from the string tables kept as its key and arguments, so that it is
// worded in the language in force where and when it is shown, not where it
// was made (another thread, before a change of language).
class LocalizedText
{
public:
    LocalizedText() = default;
    // Arguments are data (names, ids, numbers, a system's own message): never translated.
    explicit LocalizedText(QString key, QStringList arguments = {});
    explicit LocalizedText(const char *key, QStringList arguments = {});

    const QString &key() const { return m_key; }
    const QStringList &arguments() const { return m_arguments; }
    // In the active language.
    QString text() const;

    bool operator==(const LocalizedText &) const = default;

private:
    QString m_key;
    QStringList m_arguments;
};
