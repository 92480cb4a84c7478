#pragma once

#include <QString>
#include <QUrl>

#include <optional>

// The address when it is one the update check may talk to: https, a host
// without white space, no user, password or fragment, a port (if any) in
// 1...65535. Paths and queries are free. Absent otherwise.
std::optional<QUrl> secureURL(const QString &text);
