// What the panel and the setup flow ask the model to do. Each works on what
// the views show, adopts what it wrote, and asks for at most one reading.
#include "app/model/AppModel.h"

#include "core/l10n/L10n.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

// Runs `work` through the services' background and hands its result to
// `deliver` on the main thread, unless the model is gone by then.
template <typename Result>
void AppModel::inBackground(std::function<Result()> work, std::function<void(AppModel &, Result)> deliver)
{
    QPointer<AppModel> weak(this);
    m_services.background([weak, work = std::move(work), deliver = std::move(deliver)]() mutable {
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

void AppModel::start()
{
    // Read at once: whether setup opens depends on it.
    refreshNow();
    refreshLogin();
    if (m_needsOnboarding && !m_configError)
        beginSetup();
    QPointer<AppModel> weak(this);
    m_services.startKeeper(
        [weak] {
            if (weak)
                weak->refresh();
        },
        [weak](const SwitchOutcome &outcome) {
            if (weak)
                weak->receiveAutomaticOutcome(outcome);
        });
    // Once more from the event loop, where a backend may keep what it reads
    // until its desktop says it changed: the first switch back need not ask.
    QTimer::singleShot(0, this, &AppModel::refresh);
}

void AppModel::refreshLogin()
{
    if (m_loginBusy)
        return;
    const qint64 generation = ++m_loginRefresh;
    inBackground<bool>(m_services.loginEnabled, [generation](AppModel &model, bool enabled) {
        if (!model.m_loginBusy && model.m_loginRefresh == generation)
            model.assign(model.m_loginEnabled, enabled);
    });
}

void AppModel::beginSetup()
{
    if (m_configError)
        return;
    setSetupStep(0);
    setSetupSourceID(m_pinnedID);
    setSetupKeepEnabled(m_pinnedID ? m_enabled : true);
    setSetupLoginRequested(std::nullopt);
    assign(m_showsOnboarding, true);
    refreshLogin();
}

bool AppModel::writeConfig(const std::function<void(Config &)> &edit)
{
    const Expected<Config> written = m_services.updateConfig([&edit](Config &config) -> Expected<void> {
        edit(config);
        return {};
    });
    refresh();
    if (!written) {
        m_saveErrorDetail = L10n::describe(written.error());
        publishWarning();
        return false;
    }
    m_saveErrorDetail.reset();
    adopt(written);
    publishWarning();
    return true;
}

void AppModel::choose(const QString &id)
{
    const bool listed =
        std::any_of(m_sources.cbegin(), m_sources.cend(), [&id](const InputChoice &choice) { return choice.id == id; });
    if (!listed || m_configError)
        return;
    if (!writeConfig([&id](Config &config) {
            config.sourceID = id;
            config.enabled = true;
        }))
        return;
    apply();
}

void AppModel::setEnabled(bool on)
{
    if (on && (!pinnedName() || m_configError))
        return;
    const bool wasEnabled = m_enabled;
    if (!writeConfig([on](Config &config) { config.enabled = on; }))
        return;
    if (on) {
        apply();
        return;
    }
    // Had it been on, adopting the record has stopped the manual switch already.
    if (!wasEnabled) {
        orphanManualSwitch();
        m_services.cancelSwitch();
        publishWarning();
    }
}

void AppModel::setLanguage(const std::optional<QString> &code)
{
    const std::optional<QString> language = L10n::normalized(code);
    writeConfig([&language](Config &config) { config.language = language; });
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
    if (m_needsOnboarding && !writeConfig([](Config &config) { config.onboardingCompleted = true; }))
        return;
    assign(m_showsOnboarding, false);
}

void AppModel::finishSetup()
{
    if (!m_showsOnboarding || !canFinishSetup() || !m_setupSourceID)
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
    ++m_request;
    assign(m_switching, false);
    assign(m_showsOnboarding, false);
    if (keep)
        apply();
    if (login)
        setLogin(*login);
}

void AppModel::setLogin(bool on)
{
    if (m_loginBusy)
        return;
    assign(m_loginBusy, true);
    ++m_loginRefresh;
    m_loginErrorDetail.reset();
    std::function<LoginResult()> work = [services = m_services, on] {
        LoginResult result;
        if (const Expected<void> changed = services.setLogin(on); !changed)
            result.error = L10n::describe(changed.error());
        result.enabled = services.loginEnabled();
        return result;
    };
    inBackground<LoginResult>(std::move(work),
                              [](AppModel &model, const LoginResult &result) { model.deliverLogin(result); });
}

void AppModel::deliverLogin(const LoginResult &result)
{
    assign(m_loginEnabled, result.enabled);
    assign(m_loginBusy, false);
    if (result.error)
        m_loginErrorDetail = result.error;
    publishWarning();
}

void AppModel::apply()
{
    if (!m_pinnedID || !pinnedName() || m_configError)
        return;
    const qint64 token = ++m_request;
    const QString target = *m_pinnedID;
    clearWarnings();
    assign(m_switching, true);
    publishWarning();
    // Asked before the switch starts, so that a switch done at once is read together with it.
    refresh();
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
    // Judged against the world the switch left, when a reading is due.
    catchUp();
    if (token != m_request || m_pinnedID != target)
        return;
    assign(m_switching, false);
    if (outcome.kind() == SwitchOutcome::Kind::Success)
        m_manualWarning.reset();
    else
        m_manualWarning = SwitchWarning{target, outcome};
    announce();
    publishWarning();
}

void AppModel::receiveAutomaticOutcome(const SwitchOutcome &outcome)
{
    // The engine has said the world changed before telling how its switch ended.
    catchUp();
    if (!m_enabled || !m_pinnedID || m_configError || outcome.isBusy())
        return;
    if (outcome.kind() == SwitchOutcome::Kind::Success) {
        if (m_currentID == *m_pinnedID)
            clearWarnings();
    } else {
        m_automaticWarning = SwitchWarning{*m_pinnedID, outcome};
        announce();
    }
    publishWarning();
}

void AppModel::openKeyboardSettings()
{
    m_services.openKeyboardSettings();
}

void AppModel::openAddress(const QUrl &address)
{
    m_services.openAddress(address);
}

QList<DoctorCheck> AppModel::checkComputer() const
{
    return m_services.checkComputer();
}
