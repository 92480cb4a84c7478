#include "platform/WorkspaceEvents.h"

#include <QObject>
#include <QPointer>

#import <AppKit/AppKit.h>

namespace {

// Removes its workspace observer when the context object goes away.
class WorkspaceObserver : public QObject
{
public:
    WorkspaceObserver(NSNotificationName name, void (^block)(NSNotification *), QObject *parent)
        : QObject(parent)
    {
        m_token = [[NSWorkspace sharedWorkspace].notificationCenter addObserverForName:name
                                                                                object:nil
                                                                                 queue:NSOperationQueue.mainQueue
                                                                            usingBlock:block];
        [m_token retain];
    }

    ~WorkspaceObserver() override
    {
        [[NSWorkspace sharedWorkspace].notificationCenter removeObserver:m_token];
        [m_token release];
    }

private:
    id m_token = nil;
};

bool observeWorkspaceWake(QObject *context, std::function<void()> callback)
{
    new WorkspaceObserver(
        NSWorkspaceDidWakeNotification,
        ^(NSNotification *) {
          callback();
        },
        context);
    return true;
}

bool observeApplicationActivation(QObject *context, std::function<void(qint64)> callback)
{
    new WorkspaceObserver(
        NSWorkspaceDidActivateApplicationNotification,
        ^(NSNotification *notification) {
          NSRunningApplication *application = notification.userInfo[NSWorkspaceApplicationKey];
          callback(application ? application.processIdentifier : -1);
        },
        context);
    return true;
}

} // namespace

WorkspaceEvents WorkspaceEvents::live()
{
    return {observeWorkspaceWake, observeApplicationActivation};
}
