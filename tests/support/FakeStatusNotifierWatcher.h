#pragma once

#include <QDBusArgument>
#include <QObject>
#include <QStringList>

// What a desktop's tray runs on the session bus: it owns the watcher's name,
// takes the registrations of tray items, and reads and drives those items.
class FakeStatusNotifierWatcher : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

public:
    // Takes the watcher's name on the session bus; false when that fails.
    bool own();
    bool hostRegistered() const { return true; }
    int protocolVersion() const { return 0; }
    const QStringList &items() const { return m_items; }

    // The first registered item's tooltip title and text, joined.
    QString toolTip() const;
    // The first registered item's image data, all sizes.
    QByteArray iconPixels() const;
    // A click on the first registered item, as the tray host passes it on.
    bool activate() const;

public slots:
    void RegisterStatusNotifierItem(const QString &service);
    void RegisterStatusNotifierHost(const QString &) {}

private:
    QDBusArgument property(const char *name) const;

    QStringList m_items;
};
