#pragma once

#include <QtCore/QByteArray>
#include <optional>
#include <string_view>

#include "lumodevice/io/drive.hpp"

namespace zanpanel {

/// The content of a file of drive C:; none when it is not there or cannot be read.
[[nodiscard]] std::optional<QByteArray> readFile(lumodevice::io::Drive& drive,
                                                 std::string_view path);

/// Puts a file into "C:\temp" of the drive in the place of the one that has the name. False when
/// that failed; the former one is there then.
[[nodiscard]] bool writeFile(lumodevice::io::Drive& drive, std::string_view name,
                             const QByteArray& content);

}  // namespace zanpanel
