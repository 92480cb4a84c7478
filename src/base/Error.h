#pragma once

#include <QString>
#include <QStringList>

// A failure as a value: a POSIX error number with the file it concerns, or a
// decoding problem with a short reason.
class Error
{
public:
    enum class Domain { Posix, Decode, Other };

    Error() = default;
    static Error posix(int code, const QString &path = {});
    // With our own words for the reason, where the system's would mislead.
    static Error posix(int code, const QString &path, const QString &reason);
    static Error decode(const QString &reason, const QString &path = {});
    static Error other(const QString &description);

    Domain domain() const { return m_domain; }
    int code() const { return m_code; }
    const QString &path() const { return m_path; }
    // A readable sentence for logs and for texts that embed the error.
    QString description() const;

    // The same in our own words, to be shown in the user's language: a key of
    // the string tables and its arguments (L10n::describe).
    Error withWords(const char *key, const QStringList &arguments) const;
    const QString &wordsKey() const { return m_wordsKey; }
    const QStringList &wordsArguments() const { return m_wordsArguments; }

    bool operator==(const Error &) const = default;

private:
    Domain m_domain = Domain::Other;
    int m_code = 0;
    QString m_path;
    QString m_detail;
    QString m_wordsKey;
    QStringList m_wordsArguments;
};
