#include "core/instance/AppBuildInfo.h"

#include "platform/BundleInfo.h"

#include <limits>

namespace {

std::optional<QString> textOf(const QVariant &value)
{
    if (value.metaType().id() != QMetaType::QString)
        return std::nullopt;
    return value.toString();
}

} // namespace

AppBuildInfo AppBuildInfo::read(const Lookup &lookup)
{
    AppBuildInfo info;
    info.version = textOf(lookup(QStringLiteral("CFBundleShortVersionString")));
    info.build = parseBuild(lookup(QStringLiteral("CFBundleVersion")));
    info.minimumSystemVersion =
        textOf(lookup(QStringLiteral("LSMinimumSystemVersion"))).value_or(BundleInfo::defaultMinimumSystemVersion());
    info.updateURL = textOf(lookup(QStringLiteral("TolvarUpdateURL")));
    return info;
}

AppBuildInfo AppBuildInfo::current()
{
    return read(&BundleInfo::value);
}

std::optional<qint64> AppBuildInfo::parseBuild(const QVariant &stored)
{
    const std::optional<QString> text = textOf(stored);
    if (!text || text->isEmpty())
        return std::nullopt;
    QStringView digits = *text;
    const bool negative = digits.startsWith(u'-');
    if (negative || digits.startsWith(u'+'))
        digits = digits.mid(1);
    if (digits.isEmpty())
        return std::nullopt;
    // Accumulate towards the negative side, which holds one more value than the positive.
    qint64 value = 0;
    const qint64 lowest = std::numeric_limits<qint64>::min();
    for (const QChar c : digits) {
        if (c < u'0' || c > u'9')
            return std::nullopt;
        const int digit = c.unicode() - u'0';
        if (value < (lowest + digit) / 10)
            return std::nullopt;
        value = value * 10 - digit;
    }
    if (negative)
        return value;
    if (value == lowest)
        return std::nullopt;
    return -value;
}
