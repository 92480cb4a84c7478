#include "core/cli/AutomationStatus.h"

#include <QJsonArray>

namespace {

QString followingName(InputSources::Following following)
{
    return following == InputSources::Following::polled ? QStringLiteral("polling") : QStringLiteral("signals");
}

} // namespace

QJsonObject AutomationSource::toJson() const
{
    return {{QStringLiteral("id"), id}, {QStringLiteral("name"), name}};
}

QJsonObject AutomationTarget::toJson() const
{
    QJsonObject object{{QStringLiteral("id"), id}, {QStringLiteral("available"), available}};
    if (name)
        object.insert(QStringLiteral("name"), *name);
    return object;
}

QJsonObject AutomationStatus::toJson() const
{
    QJsonObject object{
        {QStringLiteral("enabled"), enabled},           {QStringLiteral("running"), running},
        {QStringLiteral("state"), state.raw()},         {QStringLiteral("current"), current.toJson()},
        {QStringLiteral("loginEnabled"), loginEnabled}, {QStringLiteral("onboardingCompleted"), onboardingCompleted},
    };
    if (target)
        object.insert(QStringLiteral("target"), target->toJson());
    object.insert(QStringLiteral("backend"), backend);
    if (backendError)
        object.insert(QStringLiteral("backendError"), ::toJson(*backendError));
    if (following)
        object.insert(QStringLiteral("following"), followingName(*following));
    object.insert(QStringLiteral("shownIn"), QJsonArray::fromStringList(shownIn));
    return object;
}

QJsonObject toJson(const AutomationFailure &failure)
{
    QJsonObject object{{QStringLiteral("code"), failure.code}, {QStringLiteral("message"), failure.message}};
    if (!failure.detail.isEmpty())
        object.insert(QStringLiteral("detail"), failure.detail);
    return object;
}
