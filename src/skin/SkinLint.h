#pragma once

#include <QSize>
#include <QString>
#include <QTextStream>
#include <functional>

namespace Pelorin {

// The skin checker behind "pelorin --check-skin FOLDER": applies the skin file exactly as a skin
// window would (pictures through `loadPicture`, which throws VbError::CannotLoadFile for a
// picture that does not load; runcode and events are not run) and writes every fault to `out`,
// one a line: "skin.ini:<line number>: <reason>: <line as written>". Faults that belong to no
// line (no skin.ini, mixed line ends) are one line "skin.ini: <reason>". Returns the number of
// faults; the program exits with 1 when there is any.
// The warning for a skin file without a single CR (saved with Unix line ends); the checker
// reports it and a loading window prints it on stderr.
QString SkinFileMixedLineEndsWarning();

int CheckSkin(const QString& folder, const std::function<void(const QString&)>& loadPicture,
              QTextStream& out, QSize primaryScreen = QSize(1024, 768));

} // namespace Pelorin
