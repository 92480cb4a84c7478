#pragma once

#include <QStringList>

class QIODevice;

// The command-line client: one request, one report, exit status 0 or 1.
namespace CLI {

// The usage text, one line per command, without a final line break.
QString usage();

// `arguments` excludes the program path. Returns the exit status.
int main(const QStringList &arguments, QIODevice &out, QIODevice &err);

} // namespace CLI
