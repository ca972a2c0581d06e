// File names as the system has them: a run of bytes, which Qt's texts cannot always hold.
#pragma once

#include <QString>
#include <QUrl>
#include <span>
#include <string>

namespace kvr::platform {

// The path of a dropped file; empty when it is none of this machine.
std::string rawPathOf(const QUrl& url);
// The program's argument that Qt shows as `shown`, as it was given.
std::string rawArgument(std::span<char* const> arguments, const QString& shown);

}  // namespace kvr::platform
