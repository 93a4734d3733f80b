#pragma once

#include <QPoint>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>

namespace Pelorin {

class PointerHost;
class WindowPlayer;

// The skin window's image buttons under the pointer: a normal, a hover and a pressed picture per
// image ("NONE", "ARTWORK" or a picture file of the skin), the code an image runs when released,
// seek images ("position"), move images ("movewindow"), the hover tracker that puts the normal
// picture back once the pointer has left, and files dropped on an artwork image.
//
// Coordinates are the image's own pixels; buttons are 1 left, 2 right, 4 middle (a move gives
// the buttons held, 0 for none); shift is 1 Shift, 2 Ctrl, 4 Alt.
class PointerInteraction {
public:
    // The command language's RunCode for the code an image runs when released.
    using CodeRunner = std::function<void(const QString& code)>;

    PointerInteraction(PointerHost& host, WindowPlayer& player, CodeRunner runCode);

    // The window's pointer signals, in Qt's terms: the one place where buttons and modifiers
    // become the numbers the handlers below count in.
    void ImagePressed(int index, Qt::MouseButton button, Qt::KeyboardModifiers modifiers,
                      QPoint position);
    void ImageMoved(int index, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers,
                    QPoint position);
    void ImageReleased(int index, Qt::MouseButton button, Qt::KeyboardModifiers modifiers,
                       QPoint position);

    void img_MouseDown(int Index, int Button, int Shift, int X, int Y);
    void img_MouseMove(int Index, int Button, int Shift, int X, int Y);
    void img_MouseUp(int Index, int Button, int Shift, int X, int Y);
    // Files dropped on img(Index): the first one becomes the current track's artwork.
    void img_OLEDragDrop(int Index, const QStringList& files);
    // The hover tracker's tick (every 50 ms while an image shows its hover picture).
    void tmrTrackImage_Timer();

    // The image showing its hover picture; -1 for none.
    int HoveredIndex() const { return m_hoveredIndex; }

    static QString DropErrorPrefix() {
        return QStringLiteral("Error on add artwork on OLE Drop: ");
    }

private:
    // Field 1 normal, 2 hover, 3 pressed; "" when the definition has no such field.
    QString PictureField(int index, int field) const;
    // Shows the hover or pressed picture of a field that is present and not "NONE".
    void ShowStatePicture(int index, const QString& field);
    // Puts the normal picture back: "NONE" clears the image.
    void RestoreNormalPicture(int index);
    void StartHover(int index);
    void SeekTo(int x, int width);
    void Report(const QString& description);

    PointerHost& m_host;
    WindowPlayer& m_player;
    CodeRunner m_runCode;
    // 16-bit, as the window keeps it.
    std::int16_t m_hoveredIndex = -1;
};

} // namespace Pelorin
