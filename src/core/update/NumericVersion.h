#pragma once

#include <QList>
#include <QStringView>

#include <optional>

// A strict dotted-number version of one to four non-negative components. Missing
// trailing components count as 0, so 1.2 and 1.2.0 are the same version.
class NumericVersion
{
public:
    // Digits and dots only; absent for anything else (signs, letters, spaces,
    // empty pieces, more than four pieces, a piece beyond 64 bits).
    static std::optional<NumericVersion> parse(QStringView text);

    const QList<qint64> &components() const { return m_components; }

    // No equality of its own: two versions are equal when neither is less.
    friend bool operator<(const NumericVersion &a, const NumericVersion &b);

private:
    explicit NumericVersion(QList<qint64> components);

    QList<qint64> m_components;
};
