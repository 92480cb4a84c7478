#pragma once

#include <QString>

#include <functional>

class QObject;

// Named per-user notifications without payload, seen by every process of the
// user. Without a channel, posting does nothing and observing says so.
struct Notifications
{
    std::function<void(const QString &name)> post;
    // Delivers on the thread of `context` until it is destroyed; false when unavailable.
    std::function<bool(const QString &name, QObject *context, std::function<void()> callback)> observe;

    static Notifications live();
    // Drops every post and observes nothing.
    static Notifications none();
};
