#include "platform/linux/x11/X11Layout.h"

#include <QObject>
#include <QProcess>
#include <QSocketNotifier>

#include "platform/linux/x11/Xcb.h"

#include <cstdlib>
#include <memory>

namespace X11Layout {
namespace {

// setxkbmap answers in a few milliseconds; a wedged X server must not hold the engine.
constexpr int runTimeoutMs = 2000;

const QString program = QStringLiteral("setxkbmap");

bool given(const QString &value)
{
    return !value.isEmpty() && value != QLatin1String("default");
}

std::optional<QString> run(const QStringList &arguments)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments, QIODevice::ReadOnly);
    if (!process.waitForStarted(runTimeoutMs) || !process.waitForFinished(runTimeoutMs)) {
        process.kill();
        process.waitForFinished(runTimeoutMs);
        return std::nullopt;
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return std::nullopt;
    return QString::fromUtf8(process.readAllStandardOutput());
}

struct FreeReply
{
    void operator()(void *reply) const { std::free(reply); }
};

template <typename Reply> using ReplyPointer = std::unique_ptr<Reply, FreeReply>;

// A connection to the display's server, its root window and the atom naming
// the layout property.
struct Display
{
    xcb_connection_t *connection = nullptr;
    xcb_window_t root = 0;
    xcb_atom_t rulesNames = XCB_ATOM_NONE;
};

std::optional<Display> connectToDisplay()
{
    const Xcb *x = Xcb::library();
    if (!x)
        return std::nullopt;
    int screen = 0;
    xcb_connection_t *connection = x->connect(nullptr, &screen);
    xcb_screen_iterator_t roots = x->setupRootsIterator(x->getSetup(connection));
    for (int i = 0; i < screen && roots.rem > 0; ++i)
        x->screenNext(&roots);
    static constexpr char name[] = "_XKB_RULES_NAMES";
    const ReplyPointer<xcb_intern_atom_reply_t> atom(
        x->internAtomReply(connection, x->internAtom(connection, 0, sizeof name - 1, name), nullptr));
    if (x->connectionHasError(connection) || roots.rem <= 0 || !atom) {
        x->disconnect(connection);
        return std::nullopt;
    }
    return Display{connection, roots.data->root, atom->atom};
}

// One connection per process, kept: reading a root property is then a single
// round trip, cheap enough to do at every look. Asked only on the main thread,
// like the input sources that ask it.
class Server
{
public:
    std::optional<QByteArray> rulesNames()
    {
        const Xcb *x = Xcb::library();
        if (!x)
            return std::nullopt;
        if (m_connection && x->connectionHasError(m_connection)) {
            x->disconnect(m_connection);
            m_connection = nullptr;
        }
        if (!m_connection && !connect())
            return std::nullopt;
        const xcb_get_property_cookie_t cookie =
            x->getProperty(m_connection, 0, m_root, m_atom, XCB_ATOM_STRING, 0, 1024);
        const ReplyPointer<xcb_get_property_reply_t> reply(x->getPropertyReply(m_connection, cookie, nullptr));
        if (!reply)
            return std::nullopt;
        return QByteArray(static_cast<const char *>(x->getPropertyValue(reply.get())),
                          x->getPropertyValueLength(reply.get()));
    }

private:
    bool connect()
    {
        const std::optional<Display> display = connectToDisplay();
        if (!display)
            return false;
        m_connection = display->connection;
        m_root = display->root;
        m_atom = display->rulesNames;
        return true;
    }

    xcb_connection_t *m_connection = nullptr;
    xcb_window_t m_root = 0;
    xcb_atom_t m_atom = XCB_ATOM_NONE;
};

// Watches a connection of its own, and closes it when it goes.
class DisplayNotifier : public QSocketNotifier
{
public:
    // Made only once the library has given a connection, on the parent's thread.
    DisplayNotifier(xcb_connection_t *connection, QObject *parent)
        : QSocketNotifier(Xcb::library()->getFileDescriptor(connection), QSocketNotifier::Read, parent)
        , m_connection(connection)
    {}
    ~DisplayNotifier() override
    {
        setEnabled(false);
        Xcb::library()->disconnect(m_connection);
    }
    DisplayNotifier(const DisplayNotifier &) = delete;
    DisplayNotifier &operator=(const DisplayNotifier &) = delete;

private:
    xcb_connection_t *m_connection;
};

Server &server()
{
    // Lives to the end of the process, like the display it talks to.
    static Server *const instance = new Server;
    return *instance;
}

bool sameLayout(const Names &now, const Names &names)
{
    return now.layout == names.layout && now.variant == (given(names.variant) ? names.variant : QString());
}

} // namespace

bool isX11Session()
{
    const QString type = qEnvironmentVariable("XDG_SESSION_TYPE");
    if (!type.isEmpty())
        return type == QLatin1String("x11");
    return !qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

std::optional<QStringList> setArguments(const Names &names)
{
    if (!given(names.layout))
        return std::nullopt;
    // A layout without a variant means its basic variant, not the one set before.
    QStringList arguments{QStringLiteral("-layout"), names.layout, QStringLiteral("-variant"),
                          given(names.variant) ? names.variant : QString()};
    // An empty -option first drops the options set before instead of adding to them.
    if (given(names.options))
        arguments << QStringLiteral("-option") << QString() << QStringLiteral("-option") << names.options;
    return arguments;
}

Names parseRulesNames(const QByteArray &property)
{
    const QList<QByteArray> fields = property.split('\0');
    const auto field = [&](qsizetype index) { return QString::fromUtf8(fields.value(index)); };
    return {field(2), field(3), field(4)};
}

bool apply(const Names &names)
{
    const std::optional<QStringList> arguments = setArguments(names);
    if (!arguments)
        return true;
    if (!run(*arguments))
        return false;
    const std::optional<Names> now = current();
    return now && sameLayout(*now, names);
}

std::optional<Names> current()
{
    const std::optional<QByteArray> property = server().rulesNames();
    if (!property)
        return std::nullopt;
    return parseRulesNames(*property);
}

bool observe(QObject *context, std::function<void()> callback)
{
    if (!context)
        return false;
    const std::optional<Display> display = connectToDisplay();
    if (!display)
        return false;
    const Xcb *x = Xcb::library();
    xcb_connection_t *connection = display->connection;
    // Every client chooses its own events on the root window; this takes nothing from the window manager.
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    x->changeWindowAttributes(connection, display->root, XCB_CW_EVENT_MASK, &mask);
    x->flush(connection);

    auto *notifier = new DisplayNotifier(connection, context);
    QObject::connect(notifier, &QSocketNotifier::activated, notifier,
                     [x, connection, notifier, atom = display->rulesNames, callback = std::move(callback)] {
                         bool changed = false;
                         while (xcb_generic_event_t *event = x->pollForEvent(connection)) {
                             if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY)
                                 changed =
                                     changed || reinterpret_cast<xcb_property_notify_event_t *>(event)->atom == atom;
                             std::free(event);
                         }
                         // A server that went away would wake this at once, and for ever.
                         if (x->connectionHasError(connection))
                             notifier->setEnabled(false);
                         if (changed)
                             callback();
                     });
    return true;
}

bool differs(const Names &names)
{
    if (!given(names.layout))
        return false;
    const std::optional<Names> now = current();
    return now && !sameLayout(*now, names);
}

} // namespace X11Layout
