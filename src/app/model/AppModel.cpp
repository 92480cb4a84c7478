#include "app/model/AppModel.h"

#include "app/tray/TrayImage.h"
#include "core/engine/Enforcer.h"
#include "core/l10n/L10n.h"
#include "core/sources/SourcesAvailability.h"

AppModel::AppModel(AppServices services, Enforcer *enforcer, QObject *parent)
    : QObject(parent)
    , m_services(std::move(services))
    , m_enforcer(enforcer)
    , m_currentSourceIcon(TrayImage::image())
{}

AppModel &AppModel::shared()
{
    // Lives as long as the process, like the engine it drives.
    static AppModel *instance = new AppModel(AppServices::live(Enforcer::shared()), &Enforcer::shared());
    return *instance;
}

template <typename T> void AppModel::assign(T &field, const T &value, void (AppModel::*signal)())
{
    if (field == value)
        return;
    field = value;
    emit(this->*signal)();
    announce();
}

// Images are compared by identity: the same cached image is no change.
template <> void AppModel::assign(QImage &field, const QImage &value, void (AppModel::*signal)())
{
    if (field.cacheKey() == value.cacheKey())
        return;
    field = value;
    emit(this->*signal)();
    announce();
}

void AppModel::announce()
{
    // A refresh changes many properties at once; views hear of it once.
    if (m_announcing)
        return;
    m_announcing = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_announcing = false;
            emit changed();
        },
        Qt::QueuedConnection);
}

void AppModel::setSetupStep(int step)
{
    assign(m_setupStep, step, &AppModel::setupStepChanged);
}

void AppModel::setSetupSourceID(const std::optional<QString> &id)
{
    assign(m_setupSourceID, id, &AppModel::setupSourceIDChanged);
}

void AppModel::setSetupKeepEnabled(bool keep)
{
    assign(m_setupKeepEnabled, keep, &AppModel::setupKeepEnabledChanged);
}

void AppModel::setSetupLoginRequested(const std::optional<bool> &login)
{
    assign(m_setupLoginRequested, login, &AppModel::setupLoginRequestedChanged);
}

namespace {

std::optional<QString> nameOf(const QList<InputChoice> &sources, const std::optional<QString> &id)
{
    if (!id)
        return std::nullopt;
    for (const InputChoice &choice : sources) {
        if (choice.id == *id)
            return choice.name;
    }
    return std::nullopt;
}

} // namespace

std::optional<QString> AppModel::pinnedName() const
{
    return nameOf(m_sources, m_pinnedID);
}

std::optional<QString> AppModel::setupSourceName() const
{
    return nameOf(m_sources, m_setupSourceID);
}

bool AppModel::canFinishSetup() const
{
    return setupSourceName() && !m_configError && !m_loginBusy;
}

bool AppModel::canRetrySwitch() const
{
    if (m_configError || (m_pinnedID && !pinnedName()))
        return false;
    if (m_switching || m_automaticSwitching || m_secureInput)
        return false;
    return m_manualWarning || (m_enabled && m_automaticWarning);
}

QString AppModel::menuSourceName() const
{
    return m_currentName.isEmpty() ? L10n::text("ui.follow-system") : m_currentName;
}

RuntimeState AppModel::runtimeState() const
{
    RuntimeInputs inputs;
    inputs.configError = m_configError;
    inputs.enabled = m_enabled;
    inputs.switching = m_switching;
    inputs.automaticSwitching = m_automaticSwitching;
    if (m_manualWarning)
        inputs.manualWarning = m_manualWarning->message().value_or(QString());
    if (m_automaticWarning)
        inputs.automaticWarning = m_automaticWarning->message().value_or(QString());
    inputs.pinnedID = m_pinnedID;
    inputs.pinnedName = pinnedName();
    inputs.secureInput = m_secureInput;
    inputs.currentID = m_currentID;
    inputs.availability = m_availability;
    return RuntimeState::derive(inputs);
}

std::optional<QString> AppModel::sourcesUnreachable() const
{
    return SourcesAvailability::warning(m_availability, m_services.framework);
}

QImage AppModel::sourceIcon(const QString &id)
{
    if (id.isEmpty() || !m_artworkSourceIDs.contains(id))
        return TrayImage::image();
    if (const auto cached = m_sourceArtwork.constFind(id); cached != m_sourceArtwork.cend())
        return *cached;
    QImage image = TrayImage::inputSourceImage(m_services.sourceIcon(id));
    m_sourceArtwork.insert(id, image);
    return image;
}

std::optional<QString> AppModel::SwitchWarning::message() const
{
    return outcome.warning();
}

void AppModel::refresh()
{
    const std::optional<QString> oldPinnedID = m_pinnedID;
    const bool wasEnabled = m_enabled;
    const QString oldCurrentID = m_currentID;

    if (const Expected<Config> config = m_services.load()) {
        m_needsOnboarding = !config->onboardingCompleted;
        const std::optional<QString> language = L10n::normalized(config->language);
        L10n::setLanguageCode(language);
        assign(m_language, language, &AppModel::languageChanged);
        assign(m_pinnedID, config->sourceID, &AppModel::pinnedIDChanged);
        assign(m_enabled, config->enabled, &AppModel::enabledChanged);
        assign(m_configError, false, &AppModel::configErrorChanged);
    } else {
        assign(m_configError, true, &AppModel::configErrorChanged);
        assign(m_enabled, false, &AppModel::enabledChanged);
    }

    if (m_pinnedID != oldPinnedID || m_enabled != wasEnabled || m_configError)
        orphanManualSwitch();
    if (wasEnabled && !m_enabled)
        m_services.cancelSwitch();

    if (const InputSources::Availability availability = m_services.availability(); availability != m_availability) {
        m_availability = availability;
        announce();
    }
    const QList<InputChoice> choices = m_services.choices();
    const InputChoice current = m_services.current();
    m_artworkSourceIDs.clear();
    for (const InputChoice &choice : choices)
        m_artworkSourceIDs.insert(choice.id);
    m_artworkSourceIDs.insert(current.id);
    if (choices != m_sources) {
        m_sourceArtwork.clear();
        assign(m_sources, choices, &AppModel::sourcesChanged);
    } else {
        m_sourceArtwork.removeIf([this](const auto &entry) { return !m_artworkSourceIDs.contains(entry.key()); });
    }

    assign(m_currentName, current.name, &AppModel::currentNameChanged);
    assign(m_currentID, current.id, &AppModel::currentIDChanged);
    assign(m_currentSourceIcon, sourceIcon(m_currentID), &AppModel::currentSourceIconChanged);
    assign(m_secureInput, m_services.secureInput(), &AppModel::secureInputChanged);
    assign(m_automaticSwitching, m_services.isSwitching(), &AppModel::automaticSwitchingChanged);

    if (m_currentID != oldCurrentID && m_pinnedID == m_currentID)
        clearWarnings();
    if (!m_secureInput) {
        const auto isSecure = [](const std::optional<SwitchWarning> &w) {
            return w && w->outcome.kind() == SwitchOutcome::Kind::SecureInput;
        };
        if (isSecure(m_manualWarning))
            m_manualWarning.reset();
        if (isSecure(m_automaticWarning))
            m_automaticWarning.reset();
    }
    publishWarning();
}

void AppModel::orphanManualSwitch()
{
    ++m_request;
    assign(m_switching, false, &AppModel::switchingChanged);
    clearWarnings();
}

void AppModel::clearWarnings()
{
    if (m_manualWarning || m_automaticWarning)
        announce();
    m_manualWarning.reset();
    m_automaticWarning.reset();
}

void AppModel::publishWarning()
{
    assign(m_warning, composedWarning(), &AppModel::warningChanged);
}

std::optional<QString> AppModel::composedWarning() const
{
    if (m_configError)
        return L10n::text("warn.config");
    QStringList lines;
    // A framework that is down is said first: then no source is missing, however empty the list.
    std::optional<QString> primary = sourcesUnreachable();
    if (!primary && m_manualWarning)
        primary = m_manualWarning->message();
    if (!primary && m_enabled) {
        if (m_pinnedID && !pinnedName())
            primary = L10n::text("warn.missing");
        else if (m_automaticWarning)
            primary = m_automaticWarning->message();
    }
    if (primary)
        lines << *primary;
    if (m_saveErrorDetail)
        lines << L10n::text("warn.save").arg(*m_saveErrorDetail);
    if (m_loginErrorDetail)
        lines << L10n::text("warn.login").arg(*m_loginErrorDetail);
    if (lines.isEmpty())
        return std::nullopt;
    return lines.join(QLatin1Char('\n'));
}

// The operations in AppModelActions.cpp assign these.
template void AppModel::assign(bool &, const bool &, void (AppModel::*)());
