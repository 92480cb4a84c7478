#pragma once

#include <QString>

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

    bool operator==(const Error &) const = default;

private:
    Domain m_domain = Domain::Other;
    int m_code = 0;
    QString m_path;
    QString m_detail;
};
