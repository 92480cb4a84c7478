#include "platform/ApplicationRole.h"

#import <AppKit/AppKit.h>

namespace ApplicationRole {

bool useOffscreenWithoutDisplay()
{
    return false;
}

void avoidSilentSessionBus() {}

void becomeAccessory()
{
    [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
}

void activateIgnoringOtherApps()
{
    [NSApp activateIgnoringOtherApps:YES];
}

void raiseAboveEverything(quintptr window)
{
    NSView *view = reinterpret_cast<NSView *>(window);
    NSWindow *nativeWindow = view.window;
    nativeWindow.level = NSScreenSaverWindowLevel;
    nativeWindow.collectionBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorStationary;
    nativeWindow.titlebarAppearsTransparent = YES;
}

void bringX11WindowForward(quintptr) {}

} // namespace ApplicationRole
