#include "MessageBox.h"

#include "base/TextRules.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <cstdio>

namespace Pelorin {

namespace {

QString TitleOrDefault(const QString& title) {
    return title.isEmpty() ? QStringLiteral("Pelorin") : title;
}

MessageBox::Answer DefaultAnswer(MessageBox::Buttons buttons) {
    switch (buttons) {
    case MessageBox::Buttons::Ok:
    case MessageBox::Buttons::OkCancel:
        return MessageBox::Answer::Ok;
    case MessageBox::Buttons::YesNo:
    case MessageBox::Buttons::YesNoCancel:
        return MessageBox::Answer::Yes;
    }
    return MessageBox::Answer::Ok;
}

// The stderr copy every box leaves; true when the box is to be shown too (not unattended, and a
// widget application to show it in).
bool LogAndDecide(const QString& title, const QString& text) {
    const QByteArray line = MessageBox::LogLine(title, text).toLocal8Bit();
    std::fprintf(stderr, "%s\n", line.constData());
    std::fflush(stderr);
    return !MessageBox::IsUnattended() &&
           qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
}

// Title and text as plain text: a skin's picture or tag named like markup
// ("x<img src=/dev/zero>") is shown as written, never laid out as rich text that loads what it
// names.
void SetTitleAndText(QMessageBox& box, const QString& title, const QString& text) {
    box.setWindowTitle(TitleOrDefault(title));
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
}

} // namespace

bool MessageBox::IsUnattended() {
    return qEnvironmentVariable("PELORIN_UNATTENDED") == QLatin1String("1");
}

QString MessageBox::LogLine(const QString& title, const QString& text) {
    QString flat = text;
    flat.replace(QLatin1String("\r\n"), QLatin1String(" / "));
    flat.replace(QLatin1Char('\n'), QLatin1String(" / "));
    flat.replace(QLatin1Char('\r'), QLatin1String(" / "));
    // Names and tags from skins reach this line: nothing in it may steer the terminal.
    return Rules::Printable(TitleOrDefault(title)) + QLatin1String(": ") + Rules::Printable(flat);
}

MessageBox::Answer MessageBox::Show(const QString& text, const QString& title, Icon icon,
                                    Buttons buttons, QWidget* parent) {
    if (!LogAndDecide(title, text))
        return DefaultAnswer(buttons);

    QMessageBox box(parent);
    SetTitleAndText(box, title, text);
    switch (icon) {
    case Icon::None:
        box.setIcon(QMessageBox::NoIcon);
        break;
    case Icon::Critical:
        box.setIcon(QMessageBox::Critical);
        break;
    case Icon::Question:
        box.setIcon(QMessageBox::Question);
        break;
    case Icon::Exclamation:
        box.setIcon(QMessageBox::Warning);
        break;
    case Icon::Information:
        box.setIcon(QMessageBox::Information);
        break;
    }
    switch (buttons) {
    case Buttons::Ok:
        box.setStandardButtons(QMessageBox::Ok);
        break;
    case Buttons::OkCancel:
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        break;
    case Buttons::YesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        break;
    case Buttons::YesNoCancel:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        break;
    }
    switch (box.exec()) {
    case QMessageBox::Cancel:
        return Answer::Cancel;
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    default:
        return Answer::Ok;
    }
}

bool MessageBox::Ask(const QString& text, const QString& title, const QString& firstButton,
                     const QString& secondButton, bool defaultIsFirst, QWidget* parent) {
    if (!LogAndDecide(title, text))
        return defaultIsFirst;

    QMessageBox box(parent);
    SetTitleAndText(box, title, text);
    box.setIcon(QMessageBox::Question);
    QPushButton* first = box.addButton(firstButton, QMessageBox::AcceptRole);
    QPushButton* second = box.addButton(secondButton, QMessageBox::RejectRole);
    box.setDefaultButton(defaultIsFirst ? first : second);
    box.setEscapeButton(second);
    box.exec();
    return box.clickedButton() == first;
}

} // namespace Pelorin
