#include "core/sources/Source.h"

namespace {

QString textOf(const QVariant &value)
{
    return value.metaType() == QMetaType::fromType<QString>() ? value.toString() : QString();
}

// IBus gives most engines a bare language ("ko" for hangul) and some a region
// after "_", POSIX-style ("zh_CN", "ja_JP"); the Apple platforms add a script
// or region after "-" ("zh-Hant"). Only the language before either counts, so
// "ja_JP" is Japanese while "kok" (Konkani) is not Korean. Chinese needs no
// such care: any code beginning with "zh" is Chinese.
QString primaryLanguage(const QString &code)
{
    static const QString separators = QStringLiteral("-_.@");
    for (qsizetype i = 0; i < code.size(); ++i) {
        if (separators.contains(code.at(i)))
            return code.left(i);
    }
    return code;
}

} // namespace

Source::Source(SourceProperties properties)
    : m_properties(std::move(properties))
{}

QString Source::id() const
{
    return textOf(m_properties.id);
}

QString Source::name() const
{
    return textOf(m_properties.localizedName);
}

bool Source::isCJKV() const
{
    const QStringList codes = languages();
    if (codes.isEmpty())
        return false;
    const QString &first = codes.constFirst();
    if (first.startsWith(QLatin1String("zh")))
        return true;
    const QString language = primaryLanguage(first);
    return language == QLatin1String("ko") || language == QLatin1String("ja") || language == QLatin1String("vi");
}

QStringList Source::languages() const
{
    const QVariant &value = m_properties.languages;
    if (value.metaType() == QMetaType::fromType<QStringList>())
        return value.toStringList();
    if (value.metaType() != QMetaType::fromType<QVariantList>())
        return {};
    QStringList codes;
    for (const QVariant &code : value.toList()) {
        if (code.metaType() != QMetaType::fromType<QString>())
            return {};
        codes << code.toString();
    }
    return codes;
}
