#include "support/FakeStatusNotifierWatcher.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

namespace {

const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
constexpr int timeoutMs = 2000;

// One (width, height, ARGB bytes) image of an a(iiay) list.
QByteArray pixels(const QDBusArgument &images)
{
    QByteArray all;
    images.beginArray();
    while (!images.atEnd()) {
        int width = 0, height = 0;
        QByteArray data;
        images.beginStructure();
        images >> width >> height >> data;
        images.endStructure();
        all += data;
    }
    images.endArray();
    return all;
}

} // namespace

bool FakeStatusNotifierWatcher::own()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                              QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties)
           && bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
}

void FakeStatusNotifierWatcher::RegisterStatusNotifierItem(const QString &service)
{
    m_items << service;
}

QDBusArgument FakeStatusNotifierWatcher::property(const char *name) const
{
    QDBusMessage get = QDBusMessage::createMethodCall(
        m_items.value(0), itemPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << itemInterface << QString::fromLatin1(name);
    const QDBusMessage answer = QDBusConnection::sessionBus().call(get, QDBus::Block, timeoutMs);
    return answer.arguments().value(0).value<QDBusVariant>().variant().value<QDBusArgument>();
}

QString FakeStatusNotifierWatcher::toolTip() const
{
    const QDBusArgument tip = property("ToolTip");
    if (tip.currentType() != QDBusArgument::StructureType)
        return {};
    QString icon, title, text;
    tip.beginStructure();
    tip >> icon;
    pixels(tip);
    tip >> title >> text;
    tip.endStructure();
    return title + text;
}

QByteArray FakeStatusNotifierWatcher::iconPixels() const
{
    const QDBusArgument images = property("IconPixmap");
    return images.currentType() == QDBusArgument::ArrayType ? pixels(images) : QByteArray();
}

bool FakeStatusNotifierWatcher::activate() const
{
    QDBusMessage click =
        QDBusMessage::createMethodCall(m_items.value(0), itemPath, itemInterface, QStringLiteral("Activate"));
    click << 0 << 0;
    return QDBusConnection::sessionBus().call(click, QDBus::Block, timeoutMs).type() == QDBusMessage::ReplyMessage;
}
