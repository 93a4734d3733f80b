// The yardstick of the start-up benchmark: the least a Qt program must do to put a frameless
// window of the Default skin's size on the screen and paint it once. startup-bench.sh compares
// pelorin's time to first paint with this program's.
//
//   bare-window LEFT TOP      (pixels; the window is 320 x 100, titled "bare-window")

#include <QApplication>
#include <QPainter>
#include <QWidget>

namespace Pelorin {

namespace {

class BareWindow : public QWidget {
public:
    BareWindow() : QWidget(nullptr, Qt::FramelessWindowHint | Qt::Tool) {
        setAttribute(Qt::WA_ShowWithoutActivating);
        setWindowTitle(QStringLiteral("bare-window"));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        // The Default skin's background colour.
        painter.fillRect(rect(), QColor(0x1B, 0x1F, 0x2A));
    }
};

} // namespace

} // namespace Pelorin

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QStringList args = QApplication::arguments();
    const int left = args.size() > 1 ? args.at(1).toInt() : 100;
    const int top = args.size() > 2 ? args.at(2).toInt() : 100;
    Pelorin::BareWindow window;
    window.setGeometry(left, top, 320, 100);
    window.show();
    return QApplication::exec();
}
