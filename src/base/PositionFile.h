#pragma once

#include <QString>
#include <functional>

namespace Pelorin {

// position.ini in a skin folder: the window's Left on line 1 and Top on line 2, in twips, each
// printed as the platform printed numbers (" 1200", "-15") and ended with CR LF.
//
// Reading applies each value as soon as it is read, so a file with one line moves the window to
// its Left and then fails on Top with VbError::InputPastEndOfFile; the caller reports the error.
// Lines are read with the leading-number rule: the blank is harmless, garbage reads as 0. Throws
// VbError when the file cannot be opened, and when it is not a regular file of at most 64 bytes
// (reached directly or through a link inside its folder): the skin's folder comes from strangers.
void ReadPositionFile(const QString& path, const std::function<void(double)>& setLeftTwips,
                      const std::function<void(double)>& setTopTwips);

// Writes the whole file (replacing any old one) or nothing, never through a link or onto anything
// but a regular file. False with `error` set on failure.
bool WritePositionFile(const QString& path, double leftTwips, double topTwips,
                       QString* error = nullptr);

// The bytes WritePositionFile writes.
QByteArray PositionFileBytes(double leftTwips, double topTwips);

// The most a position.ini is read of: two numbers of a dozen characters.
inline constexpr qint64 PositionFileMaxBytes = 64;

} // namespace Pelorin
