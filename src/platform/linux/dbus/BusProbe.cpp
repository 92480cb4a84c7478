#include "platform/linux/dbus/BusProbe.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QUrl>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <optional>

namespace BusProbe {
namespace {

struct Endpoint
{
    QByteArray path;
    bool abstract = false;
};

// "unix:path=/run/bus,guid=..." or "unix:abstract=/tmp/x"; other transports
// are not probed.
std::optional<Endpoint> unixEndpoint(const QString &entry)
{
    if (!entry.startsWith(QLatin1String("unix:")))
        return std::nullopt;
    for (const QString &pair : entry.mid(5).split(QLatin1Char(','))) {
        const QString key = pair.section(QLatin1Char('='), 0, 0);
        const QByteArray value = QUrl::fromPercentEncoding(pair.section(QLatin1Char('='), 1).toUtf8()).toUtf8();
        if (key == QLatin1String("path"))
            return Endpoint{value, false};
        if (key == QLatin1String("abstract"))
            return Endpoint{value, true};
    }
    return std::nullopt;
}

class Socket
{
public:
    Socket()
        : m_descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
    {}
    ~Socket()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    Socket(const Socket &) = delete;
    Socket &operator=(const Socket &) = delete;
    int get() const { return m_descriptor; }

private:
    int m_descriptor;
};

bool waitFor(int descriptor, short events, const QDeadlineTimer &deadline)
{
    for (;;) {
        pollfd entry{descriptor, events, 0};
        const int ready = ::poll(&entry, 1, static_cast<int>(deadline.remainingTime()));
        if (ready > 0)
            return true;
        if (ready == 0 || errno != EINTR)
            return false;
    }
}

Result knockAt(const Endpoint &endpoint, const QDeadlineTimer &deadline)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const qsizetype offset = endpoint.abstract ? 1 : 0;
    if (endpoint.path.size() + offset >= static_cast<qsizetype>(sizeof address.sun_path))
        return Result::Absent;
    std::memcpy(address.sun_path + offset, endpoint.path.constData(), static_cast<size_t>(endpoint.path.size()));
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + offset + endpoint.path.size());

    const Socket socket;
    if (socket.get() < 0)
        return Result::Silent;
    // Unix sockets connect at once, or fail with EAGAIN when the listener's
    // backlog is full: a listener that no longer accepts.
    if (::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), length) != 0) {
        if (errno == EAGAIN || errno == EINPROGRESS)
            return Result::Silent;
        return Result::Absent;
    }

    const QByteArray uid = QByteArray::number(::getuid()).toHex();
    const QByteArray hello = QByteArray(1, '\0') + "AUTH EXTERNAL " + uid + "\r\n";
    if (::send(socket.get(), hello.constData(), static_cast<size_t>(hello.size()), MSG_NOSIGNAL)
        != static_cast<ssize_t>(hello.size()))
        return Result::Silent;
    if (!waitFor(socket.get(), POLLIN, deadline))
        return Result::Silent;
    char reply[64];
    // Any answer, even a refusal, shows a live bus; libdbus takes it from there.
    return ::recv(socket.get(), reply, sizeof reply, 0) > 0 ? Result::Answered : Result::Silent;
}

} // namespace

Result knock(const QString &address, std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    Result result = Result::Absent;
    // libdbus tries the entries in order and keeps the first that connects.
    for (const QString &entry : address.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const std::optional<Endpoint> endpoint = unixEndpoint(entry);
        if (!endpoint)
            return Result::Answered;
        result = knockAt(*endpoint, deadline);
        if (result != Result::Absent)
            return result;
    }
    return result;
}

QString sessionAddress()
{
    if (QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"); !address.isEmpty())
        return address;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString socket = runtime + QStringLiteral("/bus");
    if (!runtime.isEmpty() && QFileInfo(socket).exists())
        return QStringLiteral("unix:path=") + socket;
    return {};
}

} // namespace BusProbe
