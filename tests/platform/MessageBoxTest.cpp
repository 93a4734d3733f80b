// Message boxes show what skins and tags say as plain text, and their stderr copy cannot steer
// the terminal. Offscreen, with the box really shown and answered by a timer.
#include "platform/MessageBox.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <gtest/gtest.h>

namespace Pelorin {
namespace {

// Shows a real box (not the unattended copy) and reads it while it is up.
struct ShownBox {
    Qt::TextFormat format = Qt::AutoText;
    QString text;
    bool seen = false;
};

ShownBox ShowAndRead(const QString& text) {
    ShownBox shown;
    const QByteArray unattended = qgetenv("PELORIN_UNATTENDED");
    qunsetenv("PELORIN_UNATTENDED");
    QTimer reader;
    reader.setInterval(10);
    QObject::connect(&reader, &QTimer::timeout, &reader, [&shown] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr)
            return;
        shown.seen = true;
        shown.format = box->textFormat();
        shown.text = box->text();
        box->button(QMessageBox::Ok)->click();
    });
    reader.start();
    MessageBox::Show(text, QString(), MessageBox::Icon::Critical);
    qputenv("PELORIN_UNATTENDED", unattended);
    return shown;
}

TEST(MessageBoxDisplay, TextThatLooksLikeMarkupIsShownAsWritten) {
    const QString named = QStringLiteral("Cannot load file: x<img src=/dev/zero><b>bold</b>");
    const ShownBox shown = ShowAndRead(named);
    ASSERT_TRUE(shown.seen);
    EXPECT_EQ(shown.format, Qt::PlainText);
    EXPECT_EQ(shown.text, named);
}

TEST(MessageBoxDisplay, TheStderrCopyEscapesControlCharactersOfTitleAndText) {
    EXPECT_EQ(MessageBox::LogLine(QStringLiteral("Error\x1b]0;x\x07"),
                                  QStringLiteral("line one\nline\x1b[31m two")),
              QStringLiteral("Error\\x1b]0;x\\x07: line one / line\\x1b[31m two"));
}

} // namespace
} // namespace Pelorin
