#include "skin/interaction/PointerInteraction.h"

#include "base/TextRules.h"
#include "base/VbError.h"
#include "player/IiTunes.h"
#include "player/link/PlayerAccess.h"
#include "skin/interaction/PointerHost.h"

#include <algorithm>
#include <exception>

namespace Pelorin {

namespace {

constexpr int LeftButton = 1;
constexpr int RightButton = 2;

constexpr int NormalField = 1;
constexpr int HoverField = 2;
constexpr int PressedField = 3;

bool IsNone(const QString& field) {
    return Rules::EqualsIgnoringCase(field, u"NONE");
}

bool IsArtwork(const QString& field) {
    return Rules::EqualsIgnoringCase(field, u"ARTWORK");
}

// The shift state as the handlers count it: 1 Shift, 2 Ctrl, 4 Alt.
int ShiftState(Qt::KeyboardModifiers modifiers) {
    int shift = 0;
    if (modifiers & Qt::ShiftModifier)
        shift |= 1;
    if (modifiers & Qt::ControlModifier)
        shift |= 2;
    if (modifiers & Qt::AltModifier)
        shift |= 4;
    return shift;
}

// The button of a press or release: 1 left, 2 right, 4 middle.
int ButtonNumber(Qt::MouseButton button) {
    return button == Qt::RightButton ? 2 : button == Qt::MiddleButton ? 4 : 1;
}

// The buttons held during a move, numbered as a press numbers them; 0 for none.
int ButtonsHeld(Qt::MouseButtons buttons) {
    int held = 0;
    if (buttons & Qt::LeftButton)
        held |= 1;
    if (buttons & Qt::RightButton)
        held |= 2;
    if (buttons & Qt::MiddleButton)
        held |= 4;
    return held;
}

// A hover or pressed field that asks for a picture at all.
bool Shows(const QString& field) {
    return !field.isEmpty() && !IsNone(field);
}

} // namespace

PointerInteraction::PointerInteraction(PointerHost& host, WindowPlayer& player, CodeRunner runCode)
    : m_host(host), m_player(player), m_runCode(std::move(runCode)) {}

void PointerInteraction::ImagePressed(int index, Qt::MouseButton button,
                                      Qt::KeyboardModifiers modifiers, QPoint position) {
    img_MouseDown(index, ButtonNumber(button), ShiftState(modifiers), position.x(), position.y());
}

void PointerInteraction::ImageMoved(int index, Qt::MouseButtons buttons,
                                    Qt::KeyboardModifiers modifiers, QPoint position) {
    img_MouseMove(index, ButtonsHeld(buttons), ShiftState(modifiers), position.x(), position.y());
}

void PointerInteraction::ImageReleased(int index, Qt::MouseButton button,
                                       Qt::KeyboardModifiers modifiers, QPoint position) {
    img_MouseUp(index, ButtonNumber(button), ShiftState(modifiers), position.x(), position.y());
}

QString PointerInteraction::PictureField(int index, int field) const {
    const QStringList fields = Rules::SplitFirstFields(m_host.ImagePictures(index), field, u'|');
    return fields.value(field - 1);
}

void PointerInteraction::ShowStatePicture(int index, const QString& field) {
    if (!Shows(field))
        return;
    if (IsArtwork(field))
        m_host.ShowArtworkIn(index);
    else
        m_host.SetImagePicture(index, m_host.LoadSkinPicture(field));
}

void PointerInteraction::RestoreNormalPicture(int index) {
    const QStringList fields =
        Rules::SplitFirstFields(m_host.ImagePictures(index), NormalField, u'|');
    // An image line without pictures was reported when the skin loaded; it keeps what it shows.
    if (fields.isEmpty())
        return;
    const QString& normal = fields.first();
    if (IsNone(normal))
        m_host.SetImagePicture(index, QImage());
    else if (IsArtwork(normal))
        m_host.ShowArtworkIn(index);
    else
        m_host.SetImagePicture(index, m_host.LoadSkinPicture(normal));
}

void PointerInteraction::StartHover(int index) {
    ShowStatePicture(index, PictureField(index, HoverField));
    m_hoveredIndex = static_cast<std::int16_t>(index);
    m_host.SetTrackImageTimer(true);
}

void PointerInteraction::Report(const QString& description) {
    // A picture that does not load must not take the window down; the user learns which.
    m_host.ShowMessage(description);
}

void PointerInteraction::img_MouseDown(int Index, int Button, int Shift, int X, int Y) {
    if (!m_host.ImageExists(Index))
        return;
    if (Shift != 0) {
        m_host.MoveWithHandle(Index, QPoint(X, Y));
        return;
    }
    try {
        m_hoveredIndex = -1;
        ShowStatePicture(Index, PictureField(Index, PressedField));
    } catch (const VbError& error) {
        Report(error.description());
    }
    m_host.RunInterActionCode();
    if (m_host.WindowGone())
        return;
    img_MouseMove(Index, Button, Shift, X, Y);
}

void PointerInteraction::img_MouseMove(int Index, int Button, int /*Shift*/, int X, int Y) {
    if (!m_host.ImageExists(Index))
        return;
    try {
        if (Button == 0 && m_hoveredIndex == -1 && Shows(PictureField(Index, HoverField)))
            StartHover(Index);
        if (Button != LeftButton)
            return;
        const int width = m_host.ImageRect(Index).width();
        if (width <= 0)
            return;
        const QString tag = Rules::LowerCase(m_host.ImageTag(Index));
        if (tag == u"position" && !m_player.iTunesIsNothing(true))
            SeekTo(X, width);
        if (tag == u"movewindow")
            m_host.MoveWindow(Index, QPoint(X, Y));
    } catch (const VbError& error) {
        Report(error.description());
    } catch (const std::exception& error) {
        Report(QString::fromLocal8Bit(error.what()));
    }
}

void PointerInteraction::SeekTo(int x, int width) {
    IiTunes& player = PlayerAccess::R(m_player);
    const std::shared_ptr<IITTrack> track = PlayerAccess::CurrentTrack(player);
    const int length = Rules::Seconds(track->Time());
    // A drag may leave the image on either side; the player takes positions within the track.
    const double seconds = std::clamp(static_cast<double>(x) / width * length, 0.0,
                                      static_cast<double>(std::max(length, 0)));
    player.SetPlayerPosition(Rules::ToInt32(seconds));
}

void PointerInteraction::img_MouseUp(int Index, int Button, int /*Shift*/, int X, int Y) {
    if (!m_host.ImageExists(Index))
        return;
    try {
        RestoreNormalPicture(Index);
        const QRect rect = m_host.ImageRect(Index);
        const bool inside = X >= 0 && Y >= 0 && X <= rect.width() && Y <= rect.height();
        if (inside && Shows(PictureField(Index, HoverField)))
            StartHover(Index);
        else if (!inside)
            m_hoveredIndex = -1;
    } catch (const VbError& error) {
        Report(error.description());
    }
    // The code runs wherever the button was released; the inside test only chose the picture.
    if (Button != RightButton) {
        if (m_runCode)
            m_runCode(m_host.ImageTag(Index));
    } else
        m_host.FormMouseUp(Button);
}

void PointerInteraction::tmrTrackImage_Timer() {
    if (m_hoveredIndex == -1 || !m_host.ImageExists(m_hoveredIndex)) {
        m_hoveredIndex = -1;
        m_host.SetTrackImageTimer(false);
        return;
    }
    if (m_host.PointerWithin(m_host.ImageRect(m_hoveredIndex)))
        return;
    const int index = m_hoveredIndex;
    m_hoveredIndex = -1;
    m_host.SetTrackImageTimer(false);
    try {
        RestoreNormalPicture(index);
    } catch (const VbError& error) {
        Report(error.description());
    }
}

void PointerInteraction::img_OLEDragDrop(int Index, const QStringList& files) {
    try {
        if (m_player.iTunesIsNothing(true))
            return;
        const std::shared_ptr<IITTrack> track =
            PlayerAccess::CurrentTrack(PlayerAccess::R(m_player));
        if (files.isEmpty())
            throw VbError::SubscriptOutOfRange();
        track->AddArtworkFromFile(files.first());
        // A drag brings no hover, so mostly no image is recorded as hovered: then the image the
        // file fell on is the one to redraw.
        const int redraw = m_hoveredIndex != -1 ? m_hoveredIndex : Index;
        m_host.ArtworkChanged();
        if (m_host.ImageExists(redraw))
            RestoreNormalPicture(redraw);
    } catch (const VbError& error) {
        m_host.ShowMessage(DropErrorPrefix() + error.description());
    } catch (const std::exception& error) {
        m_host.ShowMessage(DropErrorPrefix() + QString::fromLocal8Bit(error.what()));
    }
}

} // namespace Pelorin
