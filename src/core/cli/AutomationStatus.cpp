#include "core/cli/AutomationStatus.h"

#include <QJsonValue>

namespace {

std::optional<QString> stringMember(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

std::optional<bool> boolMember(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
}

QString followingName(InputSources::Following following)
{
    return following == InputSources::Following::polled ? QStringLiteral("polling") : QStringLiteral("signals");
}

std::optional<InputSources::Following> followingFrom(const QJsonValue &value)
{
    for (const InputSources::Following following :
         {InputSources::Following::announced, InputSources::Following::polled})
        if (value.toString() == followingName(following))
            return following;
    return std::nullopt;
}

} // namespace

QJsonObject AutomationSource::toJson() const
{
    return {{QStringLiteral("id"), id}, {QStringLiteral("name"), name}};
}

std::optional<AutomationSource> AutomationSource::fromJson(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    const auto id = stringMember(object, QLatin1StringView("id"));
    const auto name = stringMember(object, QLatin1StringView("name"));
    if (!value.isObject() || !id || !name)
        return std::nullopt;
    return AutomationSource{*id, *name};
}

QJsonObject AutomationTarget::toJson() const
{
    QJsonObject object{{QStringLiteral("id"), id}, {QStringLiteral("available"), available}};
    if (name)
        object.insert(QStringLiteral("name"), *name);
    return object;
}

std::optional<AutomationTarget> AutomationTarget::fromJson(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    const auto id = stringMember(object, QLatin1StringView("id"));
    const auto available = boolMember(object, QLatin1StringView("available"));
    const QJsonValue name = object.value(QLatin1StringView("name"));
    if (!value.isObject() || !id || !available || !(name.isUndefined() || name.isNull() || name.isString()))
        return std::nullopt;
    return AutomationTarget{*id, name.isString() ? std::optional(name.toString()) : std::nullopt, *available};
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
    return object;
}

std::optional<AutomationStatus> AutomationStatus::fromJson(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    const auto enabled = boolMember(object, QLatin1StringView("enabled"));
    const auto running = boolMember(object, QLatin1StringView("running"));
    const auto stateWord = stringMember(object, QLatin1StringView("state"));
    const auto state = stateWord ? RuntimeState::fromRaw(*stateWord) : std::nullopt;
    const auto current = AutomationSource::fromJson(object.value(QLatin1StringView("current")));
    const auto loginEnabled = boolMember(object, QLatin1StringView("loginEnabled"));
    const auto onboarding = boolMember(object, QLatin1StringView("onboardingCompleted"));
    const QJsonValue targetValue = object.value(QLatin1StringView("target"));
    const auto target = AutomationTarget::fromJson(targetValue);
    const bool targetAbsent = targetValue.isUndefined() || targetValue.isNull();
    const QJsonValue errorValue = object.value(QLatin1StringView("backendError"));
    const auto backendError = failureFromJson(errorValue);
    const QJsonValue followingValue = object.value(QLatin1StringView("following"));
    const auto following = followingFrom(followingValue);
    if (!following && !followingValue.isUndefined())
        return std::nullopt;
    if (!enabled || !running || !state || !current || !loginEnabled || !onboarding || (!target && !targetAbsent)
        || (!backendError && !errorValue.isUndefined()))
        return std::nullopt;
    return AutomationStatus{.enabled = *enabled,
                            .running = *running,
                            .state = *state,
                            .current = *current,
                            .target = target,
                            .loginEnabled = *loginEnabled,
                            .onboardingCompleted = *onboarding,
                            .backend = stringMember(object, QLatin1StringView("backend")).value_or(QString()),
                            .backendError = backendError,
                            .following = following};
}

QJsonObject toJson(const AutomationFailure &failure)
{
    QJsonObject object{{QStringLiteral("code"), failure.code}, {QStringLiteral("message"), failure.message}};
    if (!failure.detail.isEmpty())
        object.insert(QStringLiteral("detail"), failure.detail);
    return object;
}

std::optional<AutomationFailure> failureFromJson(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    const auto code = stringMember(object, QLatin1StringView("code"));
    const auto message = stringMember(object, QLatin1StringView("message"));
    if (!code || !message)
        return std::nullopt;
    return AutomationFailure::fromWire(*code, *message,
                                       stringMember(object, QLatin1StringView("detail")).value_or(QString()));
}
