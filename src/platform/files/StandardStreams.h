#pragma once

// Standard input, output and error as the process found them.
namespace StandardStreams {

// Puts the null device on any of the three that is closed, so that no file or
// socket opened later takes its number and receives what was meant for the
// terminal. Call first thing.
void guard();
// Whether standard output or standard error was closed when guard() ran.
bool outputWasClosed();
bool errorWasClosed();
// Whether standard output is a terminal: someone started us by hand and reads it.
bool outputIsTerminal();

} // namespace StandardStreams
