#pragma once

#include "app/model/AppServices.h"
#include "core/sources/InputChoice.h"
#include "core/sources/RuntimeState.h"
#include "core/sources/SwitchOutcome.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>

#include <optional>

// The graphical instance's one observable model. It mirrors the configuration,
// the current input source, the engine's activity and the login item, and
// carries out every action of the panel and the setup flow.
//
// What a view may rely on:
// - `changed()` follows any change once per turn of the event loop, and the
//   derived values (pinnedName, canRetrySwitch, runtimeState...) are
//   recomputed on each read, so redraw on `changed()`.
// - The configuration and the desktop are read at most once per turn, however
//   many asked: an action works on what the view showed, adopts what it wrote,
//   and the fresh reading follows before the views hear of the change.
// - All of it lives on the main thread. Operations may be called in any
//   state: each checks its own conditions and does nothing when they fail.
// - Failures never throw or pop up: they end in `warning` (one or more lines).
// - The setup flow's four fields are the view's to write while it is shown.
class AppModel : public QObject
{
    Q_OBJECT

public:
    explicit AppModel(AppServices services, QObject *parent = nullptr);
    // The process's model, on live services and the shared engine.
    static AppModel &shared();

    const QList<InputChoice> &sources() const { return m_sources; }
    const QString &currentName() const { return m_currentName; }
    const QString &currentID() const { return m_currentID; }
    const QImage &currentSourceIcon() const { return m_currentSourceIcon; }
    const std::optional<QString> &pinnedID() const { return m_pinnedID; }
    bool enabled() const { return m_enabled; }
    bool loginEnabled() const { return m_loginEnabled; }
    bool loginBusy() const { return m_loginBusy; }
    bool switching() const { return m_switching; }
    const std::optional<QString> &language() const { return m_language; }
    const std::optional<QString> &warning() const { return m_warning; }
    bool secureInput() const { return m_secureInput; }
    bool automaticSwitching() const { return m_automaticSwitching; }
    bool configError() const { return m_configError; }
    // What keeps the sources out of reach, in the user's words; none while they can be read.
    std::optional<QString> sourcesUnreachable() const;
    bool showsOnboarding() const { return m_showsOnboarding; }
    int setupStep() const { return m_setupStep; }
    const std::optional<QString> &setupSourceID() const { return m_setupSourceID; }
    bool setupKeepEnabled() const { return m_setupKeepEnabled; }
    const std::optional<bool> &setupLoginRequested() const { return m_setupLoginRequested; }

    void setSetupStep(int step);
    void setSetupSourceID(const std::optional<QString> &id);
    void setSetupKeepEnabled(bool keep);
    void setSetupLoginRequested(const std::optional<bool> &login);

    // The last configuration read said setup was never completed.
    bool needsOnboarding() const { return m_needsOnboarding; }

    std::optional<QString> pinnedName() const;
    std::optional<QString> setupSourceName() const;
    bool canFinishSetup() const;
    bool canRetrySwitch() const;
    // The current source's name, or the words for following the system.
    QString menuSourceName() const;
    RuntimeState runtimeState() const;
    // The menu-bar image for a source, fetched once and kept until invalidateArtwork().
    QImage sourceIcon(const QString &id);

    // Once, at launch: reads everything, opens setup when due, then starts the keeper.
    void start();
    // Asks for the configuration and the desktop to be read again, once, at the end of this turn.
    void refresh();
    // Reads them now, for a caller that looks at the answer before the turn
    // ends (the launch, a test); a refresh asked for earlier is met by it.
    void refreshNow();
    void refreshLogin();
    void beginSetup();
    void choose(const QString &id);
    void setEnabled(bool on);
    // None follows the system's languages.
    void setLanguage(const std::optional<QString> &code);
    void invalidateArtwork();
    void skipSetup();
    void finishSetup();
    void setLogin(bool on);
    // A manual switch to the pinned source, as the warning's retry button asks.
    void apply();
    // An outcome of a switch the engine started by itself.
    void receiveAutomaticOutcome(const SwitchOutcome &outcome);
    void openKeyboardSettings();
    void openAddress(const QUrl &address);
    // What `tolvar doctor` finds; it waits a few seconds at most on a silent framework.
    QList<DoctorCheck> checkComputer() const;

signals:
    void changed();
    // Emitted at once, before the views redraw, so that menus can retitle themselves.
    void languageChanged();

private:
    struct SwitchWarning
    {
        QString target;
        SwitchOutcome outcome;
        std::optional<QString> message() const;
    };
    struct LoginResult
    {
        bool enabled = false;
        std::optional<QString> error;
    };

    template <typename T> bool assign(T &field, const T &value);
    void announce();
    void endTurnLater();
    void endTurn();
    void catchUp();
    // Takes in a configuration record, read or just written.
    void adopt(const Expected<Config> &config);
    // Writes the configuration and adopts the result; on failure records why and says false.
    bool writeConfig(const std::function<void(Config &)> &edit);
    void orphanManualSwitch();
    void clearWarnings();
    void publishWarning();
    std::optional<QString> composedWarning() const;
    void finishManualSwitch(qint64 token, const QString &target, const SwitchOutcome &outcome);
    void deliverLogin(const LoginResult &result);
    template <typename Result>
    void inBackground(std::function<Result()> work, std::function<void(AppModel &, Result)> deliver);

    AppServices m_services;

    QList<InputChoice> m_sources;
    QString m_currentName;
    QString m_currentID;
    QImage m_currentSourceIcon;
    std::optional<QString> m_pinnedID;
    bool m_enabled = false;
    bool m_loginEnabled = false;
    bool m_loginBusy = false;
    bool m_switching = false;
    std::optional<QString> m_language;
    std::optional<QString> m_warning;
    bool m_secureInput = false;
    bool m_keymapHeld = false;
    bool m_automaticSwitching = false;
    bool m_configError = false;
    InputSources::Availability m_availability = InputSources::Availability::available;
    bool m_showsOnboarding = false;
    int m_setupStep = 0;
    std::optional<QString> m_setupSourceID;
    bool m_setupKeepEnabled = true;
    std::optional<bool> m_setupLoginRequested;

    bool m_needsOnboarding = false;
    // Why the last configuration write failed; cleared by the next one that works.
    std::optional<QString> m_saveErrorDetail;
    std::optional<SwitchWarning> m_manualWarning;
    std::optional<SwitchWarning> m_automaticWarning;
    std::optional<QString> m_loginErrorDetail;
    // Generations: a completion or query result from an older one is ignored.
    qint64 m_request = 0;
    qint64 m_loginRefresh = 0;
    QHash<QString, QImage> m_sourceArtwork;
    QSet<QString> m_artworkSourceIDs;
    // What the end of this turn owes: a reading, a change signal.
    bool m_turnEndQueued = false;
    bool m_refreshOwed = false;
    bool m_changeOwed = false;
};
