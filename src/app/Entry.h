#pragma once

#include "core/config/Config.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// The first code every process runs: sets the display language from the
// configuration, then hands over to the role the launch calls for.
namespace Entry {

struct Dependencies
{
    std::function<QString()> parentExecutablePath;
    std::function<QStringList()> desktopLaunchers;
    // config.json read without the lock; defaults when missing or unreadable.
    std::function<Config()> readConfig;

    static Dependencies live();
};

int main(int argc, char **argv, const Dependencies &dependencies = Dependencies::live());

} // namespace Entry
