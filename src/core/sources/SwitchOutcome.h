#pragma once

#include <QString>

// The result of one request to bring the pinned source back.
class SwitchOutcome
{
public:
    enum class Kind {
        Success,       // the pinned source is current, or there was nothing to do
        SecureInput,   // not tried: secure text entry is on
        MissingSource, // nothing pinned, or the pinned source cannot be selected
        Busy,          // superseded, cancelled, rate-limited or not allowed now; not worth reporting
        Failed,        // tried, and it did not work
    };

    static SwitchOutcome success();
    static SwitchOutcome secureInput();
    static SwitchOutcome missingSource();
    static SwitchOutcome busy();
    // `message` is already localised.
    static SwitchOutcome failed(const QString &message);

    Kind kind() const { return m_kind; }
    bool isBusy() const { return m_kind == Kind::Busy; }
    // Empty unless the switch failed.
    const QString &message() const { return m_message; }

    bool operator==(const SwitchOutcome &) const = default;

private:
    SwitchOutcome(Kind kind, QString message = {});

    Kind m_kind;
    QString m_message;
};
