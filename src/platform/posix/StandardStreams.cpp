#include "platform/files/StandardStreams.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace StandardStreams {
namespace {

bool closedAtStart[3] = {false, false, false};

} // namespace

void guard()
{
    for (int descriptor = 0; descriptor < 3; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) != -1 || errno != EBADF)
            continue;
        closedAtStart[descriptor] = true;
        // The lowest free number is this one.
        ::open("/dev/null", O_RDWR);
    }
}

bool outputWasClosed()
{
    return closedAtStart[1];
}

bool errorWasClosed()
{
    return closedAtStart[2];
}

bool outputIsTerminal()
{
    return ::isatty(1) == 1;
}

} // namespace StandardStreams
