#pragma once

#include <QSize>
#include <QString>

namespace Pelorin {

// What applying a skin line needs from the world around the model: pictures, the command
// language, skin events and the screen. The skin window gives the real one; the skin checker and
// the fuzzer give their own.
class SkinHost {
public:
    virtual ~SkinHost() = default;

    // Loads the picture at a full path; throws VbError::CannotLoadFile when it cannot. The model
    // keeps only the path, so a host that draws keeps what it loaded.
    virtual void LoadPicture(const QString& fullPath) = 0;
    // A "runcode" line, run at once while loading.
    virtual void RunCode(const QString& text) = 0;
    // An "event" line: declares code for a player event.
    virtual void NewEvent(const QString& text) = 0;
    // In pixels; "left=r..." and "top=r..." count from its right and bottom edges.
    virtual QSize PrimaryScreenSize() const = 0;
};

} // namespace Pelorin
