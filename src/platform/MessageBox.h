#pragma once

#include <QString>

class QWidget;

namespace Pelorin {

// Every message the program shows goes through here: a modal box with the given title, icon and
// buttons, and one line on stderr ("Title: text / second line"). With PELORIN_UNATTENDED=1 the
// box is not shown and the default button is the answer, so scripts and tests never block.
class MessageBox {
public:
    enum class Icon { None, Critical, Question, Exclamation, Information };
    enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
    enum class Answer { Ok, Cancel, Yes, No };

    static Answer Show(const QString& text, const QString& title = QString(),
                       Icon icon = Icon::None, Buttons buttons = Buttons::Ok,
                       QWidget* parent = nullptr);

    // A question with two buttons in the caller's words; true when the first is chosen. The
    // second is the default (also what Escape and PELORIN_UNATTENDED=1 answer) unless
    // `defaultIsFirst`.
    static bool Ask(const QString& text, const QString& title, const QString& firstButton,
                    const QString& secondButton, bool defaultIsFirst = false,
                    QWidget* parent = nullptr);

    // The title and text as the stderr copy writes them.
    static QString LogLine(const QString& title, const QString& text);

    static bool IsUnattended();
};

} // namespace Pelorin
