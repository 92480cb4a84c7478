#pragma once

#include "core/login/InstanceLock.h"

#include <QObject>

// The one long-running instance per user: it holds the instance lock and runs
// the engine for as long as it lives. A second launch hands over to it.
class GraphicalInstance : public QObject
{
public:
    explicit GraphicalInstance(bool openWindowOnLaunch);

    enum class Launch { Running, HandedOver, LockFailed };

    // Anything but Running means this process ends now.
    Launch launch();

private:
    // Running when this is the one instance; HandedOver after telling the other to show itself.
    Launch adoptExistingInstance();
    void showWindow();

    InstanceLock m_instanceLock;
    bool m_openWindowOnLaunch;
};
