// What the panel and the setup flow ask the model to do.
#include "app/model/AppModel.h"

#include "core/engine/Enforcer.h"
#include "core/l10n/L10n.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>

namespace {

// Runs `work` on a worker thread and hands its result to `deliver` on the main
// thread, unless the model is gone by then.
template <typename Result>
void inBackground(AppModel *model, std::function<Result()> work, std::function<void(AppModel &, Result)> deliver)
{
    QPointer<AppModel> weak(model);
    QThreadPool::globalInstance()->start([weak, work = std::move(work), deliver = std::move(deliver)]() mutable {
        Result result = work();
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [weak, result = std::move(result), deliver = std::move(deliver)] {
                if (weak)
                    deliver(*weak, result);
            },
            Qt::QueuedConnection);
    });
}

} // namespace

void AppModel::start()
{
    if (m_enforcer) {
        QPointer<AppModel> weak(this);
        m_enforcer->setOnUpdate([weak] {
            if (weak)
                weak->refresh();
        });
        m_enforcer->setOnAutomaticOutcome([weak](const SwitchOutcome &outcome) {
            if (weak)
                weak->receiveAutomaticOutcome(outcome);
        });
        m_enforcer->start();
    }
    refresh();
    refreshLogin();
    if (m_needsOnboarding && !m_configError)
        beginSetup();
    if (m_enforcer && m_enabled) {
        refresh();
        m_enforcer->enforce(SwitchOrigin::Automatic);
    }
}

void AppModel::refreshLogin()
{
    if (m_loginBusy)
        return;
    if (isPreview()) {
        assign(m_loginEnabled, m_services.loginEnabled(), &AppModel::loginEnabledChanged);
        return;
    }
    const qint64 generation = ++m_loginRefresh;
    inBackground<bool>(this, m_services.loginEnabled, [generation](AppModel &model, bool enabled) {
        if (!model.m_loginBusy && model.m_loginRefresh == generation)
            model.assign(model.m_loginEnabled, enabled, &AppModel::loginEnabledChanged);
    });
}

void AppModel::beginSetup()
{
    refresh();
    if (m_configError)
        return;
    setSetupStep(0);
    setSetupSourceID(m_pinnedID);
    setSetupKeepEnabled(m_pinnedID ? m_enabled : true);
    setSetupLoginRequested(std::nullopt);
    assign(m_showsOnboarding, true, &AppModel::showsOnboardingChanged);
    refreshLogin();
}

bool AppModel::writeConfig(const std::function<void(Config &)> &edit)
{
    std::optional<Error> failure;
    if (m_services.updateConfig) {
        const Expected<Config> updated = m_services.updateConfig([&edit](Config &config) -> Expected<void> {
            edit(config);
            return {};
        });
        if (!updated)
            failure = updated.error();
    } else if (Expected<Config> loaded = m_services.load(); !loaded) {
        failure = loaded.error();
    } else {
        edit(loaded.value());
        if (const Expected<void> saved = m_services.save(loaded.value()); !saved)
            failure = saved.error();
    }
    if (failure) {
        m_saveErrorDetail = L10n::describe(*failure);
        refresh();
        return false;
    }
    m_saveErrorDetail.reset();
    return true;
}

void AppModel::choose(const QString &id)
{
    refresh();
    const bool listed =
        std::any_of(m_sources.cbegin(), m_sources.cend(), [&id](const InputChoice &choice) { return choice.id == id; });
    if (!listed || m_configError)
        return;
    if (!writeConfig([&id](Config &config) {
            config.sourceID = id;
            config.enabled = true;
        }))
        return;
    refresh();
    apply();
}

void AppModel::setEnabled(bool on)
{
    if (on) {
        refresh();
        if (!pinnedName() || m_configError)
            return;
    }
    const bool wasEnabled = m_enabled;
    if (!writeConfig([on](Config &config) { config.enabled = on; }))
        return;
    refresh();
    if (on) {
        apply();
        return;
    }
    ++m_request;
    assign(m_switching, false, &AppModel::switchingChanged);
    clearWarnings();
    // Had it been on, the refresh would already have cancelled on seeing it go off.
    if (!wasEnabled)
        m_services.cancelSwitch();
    refresh();
}

void AppModel::setLanguage(const std::optional<QString> &code)
{
    const std::optional<QString> language = L10n::normalized(code);
    if (writeConfig([&language](Config &config) { config.language = language; }))
        refresh();
}

void AppModel::invalidateArtwork()
{
    announce();
    m_sourceArtwork.clear();
    refresh();
}

void AppModel::skipSetup()
{
    if (!m_showsOnboarding || m_loginBusy)
        return;
    if (m_needsOnboarding) {
        if (!writeConfig([](Config &config) { config.onboardingCompleted = true; }))
            return;
        refresh();
    }
    assign(m_showsOnboarding, false, &AppModel::showsOnboardingChanged);
}

void AppModel::finishSetup()
{
    if (!m_showsOnboarding)
        return;
    refresh();
    if (!canFinishSetup() || !m_setupSourceID)
        return;
    const QString id = *m_setupSourceID;
    const bool keep = m_setupKeepEnabled;
    const std::optional<bool> login = m_setupLoginRequested;
    if (!writeConfig([&](Config &config) {
            config.sourceID = id;
            config.enabled = keep;
            config.onboardingCompleted = true;
        }))
        return;
    refresh();
    ++m_request;
    assign(m_switching, false, &AppModel::switchingChanged);
    assign(m_showsOnboarding, false, &AppModel::showsOnboardingChanged);
    if (keep)
        apply();
    if (login)
        setLogin(*login);
}

void AppModel::setLogin(bool on)
{
    if (m_loginBusy)
        return;
    assign(m_loginBusy, true, &AppModel::loginBusyChanged);
    ++m_loginRefresh;
    m_loginErrorDetail.reset();
    std::function<LoginResult()> work = [services = m_services, on] {
        LoginResult result;
        if (const Expected<void> changed = services.setLogin(on); !changed)
            result.error = L10n::describe(changed.error());
        result.enabled = services.loginEnabled();
        return result;
    };
    if (isPreview()) {
        deliverLogin(work());
        return;
    }
    inBackground<LoginResult>(this, std::move(work),
                              [](AppModel &model, const LoginResult &result) { model.deliverLogin(result); });
}

void AppModel::deliverLogin(const LoginResult &result)
{
    assign(m_loginEnabled, result.enabled, &AppModel::loginEnabledChanged);
    assign(m_loginBusy, false, &AppModel::loginBusyChanged);
    if (result.error)
        m_loginErrorDetail = result.error;
    refresh();
}

void AppModel::apply()
{
    if (!m_pinnedID || !pinnedName() || m_configError)
        return;
    const qint64 token = ++m_request;
    const QString target = *m_pinnedID;
    clearWarnings();
    assign(m_switching, true, &AppModel::switchingChanged);
    publishWarning();
    QPointer<AppModel> weak(this);
    m_services.apply([weak, token, target](const SwitchOutcome &outcome) {
        if (weak)
            weak->finishManualSwitch(token, target, outcome);
    });
}

void AppModel::finishManualSwitch(qint64 token, const QString &target, const SwitchOutcome &outcome)
{
    if (token != m_request)
        return;
    refresh();
    if (token != m_request || m_pinnedID != target)
        return;
    assign(m_switching, false, &AppModel::switchingChanged);
    if (outcome.kind() == SwitchOutcome::Kind::Success)
        m_manualWarning.reset();
    else
        m_manualWarning = SwitchWarning{target, outcome};
    announce();
    refresh();
}

void AppModel::receiveAutomaticOutcome(const SwitchOutcome &outcome)
{
    refresh();
    if (!m_enabled || !m_pinnedID || m_configError || outcome.isBusy())
        return;
    if (outcome.kind() == SwitchOutcome::Kind::Success) {
        if (m_currentID == *m_pinnedID)
            clearWarnings();
    } else {
        m_automaticWarning = SwitchWarning{*m_pinnedID, outcome};
        announce();
    }
    refresh();
}
