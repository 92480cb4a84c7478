#include "core/update/SecureURL.h"

std::optional<QUrl> secureURL(const QString &text)
{
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().toLower() != u"https")
        return std::nullopt;
    const QString host = url.host(QUrl::FullyEncoded);
    if (host.isEmpty() || std::any_of(host.begin(), host.end(), [](QChar c) { return c.isSpace(); }))
        return std::nullopt;
    // An empty fragment ("...#") counts as a fragment too.
    if (!url.userName().isNull() || !url.password().isNull() || url.hasFragment())
        return std::nullopt;
    if (url.port() != -1 && (url.port() < 1 || url.port() > 65535))
        return std::nullopt;
    return url;
}
