#pragma once

#include "base/Expected.h"
#include "core/config/Config.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// The first code every process runs: moves the configuration from an earlier
// version's place, sets the display language from it, then hands over to the
// role the launch calls for.
namespace Entry {

struct Dependencies
{
    std::function<QString()> parentExecutablePath;
    std::function<QStringList()> desktopLaunchers;
    // config.json read without the lock; defaults when missing, else read and decode errors.
    std::function<Expected<Config>()> readConfig;
    // Moves config.json from where earlier versions kept it; the error when it could not.
    std::function<Expected<void>()> moveEarlierConfig;

    static Dependencies live();
};

int main(int argc, char **argv, const Dependencies &dependencies = Dependencies::live());

} // namespace Entry
