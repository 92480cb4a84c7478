#include "platform/SystemLanguages.h"

#include <QLocale>

namespace SystemLanguages {

QStringList preferred()
{
    // Qt reads LANGUAGE, LC_ALL, LC_MESSAGES and LANG, as desktop sessions set them.
    return QLocale::system().uiLanguages();
}

} // namespace SystemLanguages
