#pragma once

#include <QString>

// How one request to bring the pinned source back ended.
class SwitchOutcome
{
public:
    enum class Kind { Success, SecureInput, MissingSource, Busy, Failed };

    static SwitchOutcome success() { return SwitchOutcome(Kind::Success); }
    static SwitchOutcome secureInput() { return SwitchOutcome(Kind::SecureInput); }
    static SwitchOutcome missingSource() { return SwitchOutcome(Kind::MissingSource); }
    // Superseded, cancelled, rate-limited or not allowed now: nothing to report.
    static SwitchOutcome busy() { return SwitchOutcome(Kind::Busy); }
    // The switch was tried and did not work; `message` is already localised.
    static SwitchOutcome failed(QString message) { return SwitchOutcome(Kind::Failed, std::move(message)); }

    Kind kind() const { return m_kind; }
    bool isBusy() const { return m_kind == Kind::Busy; }
    const QString &message() const { return m_message; }

    bool operator==(const SwitchOutcome &) const = default;

private:
    explicit SwitchOutcome(Kind kind, QString message = {})
        : m_kind(kind)
        , m_message(std::move(message))
    {}

    Kind m_kind;
    QString m_message;
};
