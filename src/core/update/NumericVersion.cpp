#include "core/update/NumericVersion.h"

#include <limits>

NumericVersion::NumericVersion(QList<qint64> components)
    : m_components(std::move(components))
{}

std::optional<NumericVersion> NumericVersion::parse(QStringView text)
{
    const QList<QStringView> pieces = text.split(u'.');
    if (pieces.size() > 4)
        return std::nullopt;
    QList<qint64> components;
    for (const QStringView piece : pieces) {
        if (piece.isEmpty())
            return std::nullopt;
        qint64 value = 0;
        for (const QChar c : piece) {
            // QChar::isDigit would accept full-width and other scripts' digits.
            if (c < u'0' || c > u'9')
                return std::nullopt;
            const int digit = c.unicode() - u'0';
            if (value > (std::numeric_limits<qint64>::max() - digit) / 10)
                return std::nullopt;
            value = value * 10 + digit;
        }
        components << value;
    }
    return NumericVersion(std::move(components));
}

bool operator<(const NumericVersion &a, const NumericVersion &b)
{
    const qsizetype count = std::max(a.m_components.size(), b.m_components.size());
    for (qsizetype i = 0; i < count; ++i) {
        const qint64 left = a.m_components.value(i, 0);
        const qint64 right = b.m_components.value(i, 0);
        if (left != right)
            return left < right;
    }
    return false;
}
