// The window of a production line, which is a program beside this one.
#pragma once

#include <QString>
#include <span>

namespace kvr::window {

// Starts it with a project, or "" for that of the last time. Empty: it runs; else why not.
QString startStations(const QString& project);
// This process becomes it. Returns only when it could not: what to end with.
int becomeStations(std::span<char*> arguments);

}  // namespace kvr::window
