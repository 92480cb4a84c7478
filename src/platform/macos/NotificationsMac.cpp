#include "platform/Notifications.h"

#include <QMetaObject>
#include <QObject>
#include <QPointer>

#include <CoreFoundation/CoreFoundation.h>

namespace {

// Owned by the context object; the observer is removed when it goes away.
class DistributedObserver : public QObject
{
public:
    DistributedObserver(const QString &name, std::function<void()> callback, QObject *parent)
        : QObject(parent)
        , m_name(name.toCFString())
        , m_callback(std::move(callback))
    {
        CFNotificationCenterAddObserver(CFNotificationCenterGetDistributedCenter(), this,
                                        &DistributedObserver::received, m_name, nullptr,
                                        CFNotificationSuspensionBehaviorDeliverImmediately);
    }

    ~DistributedObserver() override
    {
        CFNotificationCenterRemoveObserver(CFNotificationCenterGetDistributedCenter(), this, m_name, nullptr);
        CFRelease(m_name);
    }

private:
    static void received(CFNotificationCenterRef, void *observer, CFNotificationName, const void *, CFDictionaryRef)
    {
        // Delivery may come on another thread; the callback runs on the owner's.
        QPointer<DistributedObserver> self(static_cast<DistributedObserver *>(observer));
        QMetaObject::invokeMethod(
            self.data(),
            [self] {
                if (self)
                    self->m_callback();
            },
            Qt::QueuedConnection);
    }

    CFStringRef m_name;
    std::function<void()> m_callback;
};

} // namespace

Notifications Notifications::live()
{
    return {
        [](const QString &name) {
            const CFStringRef cfName = name.toCFString();
            CFNotificationCenterPostNotification(CFNotificationCenterGetDistributedCenter(), cfName, nullptr, nullptr,
                                                 false);
            CFRelease(cfName);
        },
        [](const QString &name, QObject *context, std::function<void()> callback) {
            new DistributedObserver(name, std::move(callback), context);
            return true;
        },
    };
}
