#include "core/l10n/LocalizedText.h"

#include "core/l10n/L10n.h"

LocalizedText::LocalizedText(QString key, QStringList arguments)
    : m_key(std::move(key))
    , m_arguments(std::move(arguments))
{}

LocalizedText::LocalizedText(const char *key, QStringList arguments)
    : LocalizedText(QString::fromLatin1(key), std::move(arguments))
{}

QString LocalizedText::text() const
{
    return L10n::filled(L10n::text(m_key), m_arguments);
}
