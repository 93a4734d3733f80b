#pragma once

#include "SkinWindow.h"
#include "skin/SkinHost.h"
#include "skin/SkinModel.h"

#include <QHash>
#include <QImage>
#include <QWidget>
#include <functional>

namespace Pelorin {

class FormsRegistry;

// A skin window that applies the whole skin file to its model and shows a frameless window of
// the skin's size, colour and place. It knows nothing of elements yet: the full skin window
// replaces it.
class PlainSkinWindow : public QWidget, public SkinWindow, private SkinHost {
    Q_OBJECT
public:
    using UnloadingHandler = std::function<void(SkinWindow&)>;

    PlainSkinWindow(FormsRegistry& forms, UnloadingHandler onUnloading);
    ~PlainSkinWindow() override;

    QString Tag() const override { return m_model.Tag; }
    void Unload() override;
    QWidget* Widget() override { return this; }

    void SetIsDeskbar(bool isDeskbar) override { m_model.IsDeskbar = isDeskbar; }
    bool IsDeskbar() const override { return m_model.IsDeskbar; }
    void LoadSkin(const QString& skinFile, const QString& path) override;
    void SetLeftTwips(double twips) override;
    void SetTopTwips(double twips) override;
    double LeftTwips() const override;
    double TopTwips() const override;
    void RunAfter() override;
    bool EmbedInto(quint64 hostWindowId) override;

    const SkinModel& Model() const { return m_model; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void LoadPicture(const QString& fullPath) override;
    void RunCode(const QString& text) override;
    void NewEvent(const QString& text) override;
    QSize PrimaryScreenSize() const override;

    void ApplyGeometry();

    FormsRegistry& m_forms;
    UnloadingHandler m_onUnloading;
    SkinModel m_model;
    QHash<QString, QImage> m_pictures;
    bool m_unloading = false;
};

} // namespace Pelorin
