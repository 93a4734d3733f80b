// Which skins may change the user's music: the shipped ones, the ones the user allowed, and no
// other without asking once. Offscreen; the question is a real box, answered by a timer, or the
// unattended default.
#include "app/SkinTrust.h"

#include "StderrCapture.h"
#include "base/Settings.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>
#include <memory>

namespace Pelorin {
namespace {

class SkinTrustTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        settings = std::make_unique<Settings>(dir.filePath(QStringLiteral("Pelorin.conf")));
    }

    // Shows the real question and presses the button named `answer`.
    bool AskAndAnswer(const QString& skin, const QString& command, const QString& answer) {
        const QByteArray unattended = qgetenv("PELORIN_UNATTENDED");
        qunsetenv("PELORIN_UNATTENDED");
        QTimer answerer;
        answerer.setInterval(10);
        QObject::connect(&answerer, &QTimer::timeout, &answerer, [this, answer] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr)
                return;
            asked.append(box->text());
            for (QAbstractButton* button : box->buttons()) {
                if (button->text() == answer)
                    button->click();
            }
        });
        answerer.start();
        const bool allowed = trust().MayChangeLibrary(skin, command);
        qputenv("PELORIN_UNATTENDED", unattended);
        return allowed;
    }

    SkinTrust& trust() {
        if (!m_trust)
            m_trust = std::make_unique<SkinTrust>(*settings);
        return *m_trust;
    }

    QTemporaryDir dir;
    std::unique_ptr<Settings> settings;
    QStringList asked;

private:
    std::unique_ptr<SkinTrust> m_trust;
};

} // namespace

TEST_F(SkinTrustTest, TheShippedSkinsMayChangeTheLibraryWithoutAQuestion) {
    Testing::StderrCapture errors;
    EXPECT_TRUE(trust().MayChangeLibrary(QStringLiteral("Default"), QStringLiteral("edittag")));
    EXPECT_TRUE(trust().MayChangeLibrary(QStringLiteral("Mini"), QStringLiteral("delete")));
    EXPECT_TRUE(errors.Lines().isEmpty());
}

TEST_F(SkinTrustTest, TheShippedSkinsAreTheOnesInTheDataFolder) {
    const QStringList folders = QDir(QStringLiteral(PELORIN_SOURCE_DIR "/data/Skins"))
                                    .entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    EXPECT_EQ(folders, SkinTrust::ShippedSkins());
}

TEST_F(SkinTrustTest, AStrangersSkinIsAskedOnceAndADenialHoldsForTheRun) {
    Testing::StderrCapture errors;
    // Unattended, the question takes its default answer: Deny.
    EXPECT_FALSE(trust().MayChangeLibrary(QStringLiteral("Downloaded"), QStringLiteral("edittag")));
    EXPECT_FALSE(
        trust().MayChangeLibrary(QStringLiteral("Downloaded"), QStringLiteral("deletecompletely")));
    EXPECT_EQ(errors.Messages(QStringLiteral("Pelorin")),
              QStringList{SkinTrust::QuestionText(QStringLiteral("Downloaded"),
                                                  QStringLiteral("edittag"))});
    EXPECT_EQ(settings->GetSetting(Settings::TrustedSkins), QString());
}

TEST_F(SkinTrustTest, AllowIsKeptInTheSettingAndAskedNeverAgain) {
    EXPECT_TRUE(AskAndAnswer(QStringLiteral("Downloaded"), QStringLiteral("setasstart"),
                             QStringLiteral("Allow")));
    ASSERT_EQ(asked.size(), 1);
    EXPECT_EQ(asked.first(),
              QStringLiteral("The skin \"Downloaded\" wants to change your music library "
                             "(\"setasstart\"). Allow this skin to change tags, playlists and "
                             "files?"));
    EXPECT_EQ(settings->GetSetting(Settings::TrustedSkins), QStringLiteral("Downloaded"));
    // A new run reads the setting.
    SkinTrust nextRun(*settings);
    Testing::StderrCapture errors;
    EXPECT_TRUE(nextRun.MayChangeLibrary(QStringLiteral("Downloaded"), QStringLiteral("delete")));
    EXPECT_TRUE(errors.Lines().isEmpty());
}

TEST_F(SkinTrustTest, DenyFromTheBoxRefusesAndAsksNoMore) {
    EXPECT_FALSE(AskAndAnswer(QStringLiteral("Other"), QStringLiteral("addtoplaylist"),
                              QStringLiteral("Deny")));
    EXPECT_FALSE(AskAndAnswer(QStringLiteral("Other"), QStringLiteral("addtoplaylist"),
                              QStringLiteral("Deny")));
    EXPECT_EQ(asked.size(), 1);
}

} // namespace Pelorin
