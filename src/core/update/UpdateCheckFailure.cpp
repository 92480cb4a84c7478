#include "core/update/UpdateCheckFailure.h"

#include "core/l10n/L10n.h"

#include <QLocale>

QString UpdateCheckFailure::message() const
{
    switch (kind) {
    case Kind::Http: return L10n::text("about.update.http").arg(QLocale().toString(status));
    case Kind::InvalidSource: return L10n::text("about.update.invalid-source");
    case Kind::InvalidCurrentVersion: return L10n::text("about.update.invalid-version");
    case Kind::Network: return L10n::text("about.update.network");
    case Kind::InsecureRedirect: return L10n::text("about.update.insecure-redirect");
    case Kind::InvalidResponse:
    case Kind::InvalidManifest:
    case Kind::WrongApplication:
    case Kind::ResponseTooLarge: return L10n::text("about.update.invalid-response");
    }
    return {};
}
