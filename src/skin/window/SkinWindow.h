#pragma once

#include "Form.h"

namespace Pelorin {

// A skin window (frmMain) as the shell sees it: created hidden, loaded from a skin file,
// optionally moved, then shown (or unloaded again) by RunAfter.
class SkinWindow : public Form {
public:
    QString Name() const override { return QStringLiteral("frmMain"); }

    virtual void SetIsDeskbar(bool isDeskbar) = 0;
    virtual bool IsDeskbar() const = 0;
    // Reads and applies the whole skin file; reports its own errors.
    virtual void LoadSkin(const QString& skinFile, const QString& path) = 0;
    // Window position in twips, as the command line and position.ini carry it.
    virtual void SetLeftTwips(double twips) = 0;
    virtual void SetTopTwips(double twips) = 0;
    virtual double LeftTwips() const = 0;
    virtual double TopTwips() const = 0;
    // The steps after loading: single instance, stacking, alpha, shape, showing.
    virtual void RunAfter() = 0;
    // Puts the window inside a foreign host window (deskband); false when that cannot be done.
    virtual bool EmbedInto(quint64 hostWindowId) = 0;
};

class SkinWindowFactory {
public:
    virtual ~SkinWindowFactory() = default;
    // A new hidden skin window, registered in the open-forms registry.
    virtual SkinWindow* CreateSkinWindow() = 0;
};

} // namespace Pelorin
