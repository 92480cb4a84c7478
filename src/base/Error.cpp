#include "base/Error.h"

#include <cstring>

Error Error::posix(int code, const QString &path)
{
    Error error;
    error.m_domain = Domain::Posix;
    error.m_code = code;
    error.m_path = path;
    error.m_detail = QString::fromLocal8Bit(std::strerror(code));
    return error;
}

Error Error::posix(int code, const QString &path, const QString &reason)
{
    Error error = posix(code, path);
    error.m_detail = reason;
    return error;
}

Error Error::decode(const QString &reason, const QString &path)
{
    Error error;
    error.m_domain = Domain::Decode;
    error.m_path = path;
    error.m_detail = reason;
    return error;
}

Error Error::other(const QString &description)
{
    Error error;
    error.m_detail = description;
    return error;
}

QString Error::description() const
{
    if (m_path.isEmpty())
        return m_detail;
    return QStringLiteral("%1: %2").arg(m_path, m_detail);
}

Error Error::withWords(const char *key, const QStringList &arguments) const
{
    Error error = *this;
    error.m_wordsKey = QString::fromLatin1(key);
    error.m_wordsArguments = arguments;
    return error;
}
