#include "app/model/AppModel.h"

#include "app/tray/TrayImage.h"
#include "core/engine/Enforcer.h"
#include "core/l10n/L10n.h"
#include "core/sources/SourcesAvailability.h"

#include <utility>

AppModel::AppModel(AppServices services, QObject *parent)
    : QObject(parent)
    , m_services(std::move(services))
    , m_currentSourceIcon(TrayImage::image())
{}

AppModel &AppModel::shared()
{
    // Lives as long as the process, like the engine it drives.
    static AppModel *instance = new AppModel(AppServices::live(Enforcer::shared()));
    return *instance;
}

template <typename T> bool AppModel::assign(T &field, const T &value)
{
    if (field == value)
        return false;
    field = value;
    announce();
    return true;
}

// Images are compared by identity: the same cached image is no change.
template <> bool AppModel::assign(QImage &field, const QImage &value)
{
    if (field.cacheKey() == value.cacheKey())
        return false;
    field = value;
    announce();
    return true;
}

void AppModel::refresh()
{
    m_refreshOwed = true;
    endTurnLater();
}

void AppModel::announce()
{
    m_changeOwed = true;
    endTurnLater();
}

void AppModel::endTurnLater()
{
    if (m_turnEndQueued)
        return;
    m_turnEndQueued = true;
    QMetaObject::invokeMethod(this, &AppModel::endTurn, Qt::QueuedConnection);
}

void AppModel::endTurn()
{
    // One action asks for several readings, and changes many values at once:
    // the desktop is asked once, and views hear of it once, with its answer.
    catchUp();
    m_turnEndQueued = false;
    if (std::exchange(m_changeOwed, false))
        emit changed();
}

void AppModel::catchUp()
{
    if (m_refreshOwed)
        refreshNow();
}

void AppModel::setSetupStep(int step)
{
    assign(m_setupStep, step);
}

void AppModel::setSetupSourceID(const std::optional<QString> &id)
{
    assign(m_setupSourceID, id);
}

void AppModel::setSetupKeepEnabled(bool keep)
{
    assign(m_setupKeepEnabled, keep);
}

void AppModel::setSetupLoginRequested(const std::optional<bool> &login)
{
    assign(m_setupLoginRequested, login);
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
    if (m_switching || m_automaticSwitching || m_secureInput || m_keymapHeld)
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
    inputs.keymapHeld = m_keymapHeld;
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

void AppModel::refreshNow()
{
    m_refreshOwed = false;
    const QString oldCurrentID = m_currentID;
    adopt(m_services.load());

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
        assign(m_sources, choices);
    } else {
        m_sourceArtwork.removeIf([this](const auto &entry) { return !m_artworkSourceIDs.contains(entry.key()); });
    }

    assign(m_currentName, current.name);
    assign(m_currentID, current.id);
    assign(m_currentSourceIcon, sourceIcon(m_currentID));
    assign(m_secureInput, m_services.secureInput());
    assign(m_keymapHeld, m_services.keymapHeld());
    assign(m_automaticSwitching, m_services.isSwitching());

    if (m_currentID != oldCurrentID && m_pinnedID == m_currentID)
        clearWarnings();
    publishWarning();
}

void AppModel::adopt(const Expected<Config> &config)
{
    const std::optional<QString> oldPinnedID = m_pinnedID;
    const bool wasEnabled = m_enabled;
    if (config) {
        m_needsOnboarding = !config->onboardingCompleted;
        const std::optional<QString> language = L10n::normalized(config->language);
        L10n::setLanguageCode(language);
        if (assign(m_language, language))
            emit languageChanged();
        assign(m_pinnedID, config->sourceID);
        assign(m_enabled, config->enabled);
        assign(m_configError, false);
    } else {
        assign(m_configError, true);
        assign(m_enabled, false);
    }

    if (m_pinnedID != oldPinnedID || m_enabled != wasEnabled || m_configError)
        orphanManualSwitch();
    if (wasEnabled && !m_enabled)
        m_services.cancelSwitch();
}

void AppModel::orphanManualSwitch()
{
    ++m_request;
    assign(m_switching, false);
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
    // A wait whose cause is gone is no longer worth a word.
    const auto isOver = [this](const std::optional<SwitchWarning> &w) {
        return w
               && ((w->outcome.kind() == SwitchOutcome::Kind::SecureInput && !m_secureInput)
                   || (w->outcome.kind() == SwitchOutcome::Kind::KeymapHeld && !m_keymapHeld));
    };
    if (isOver(m_manualWarning))
        m_manualWarning.reset();
    if (isOver(m_automaticWarning))
        m_automaticWarning.reset();
    assign(m_warning, composedWarning());
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
template bool AppModel::assign(bool &, const bool &);
