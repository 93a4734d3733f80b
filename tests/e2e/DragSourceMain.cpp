// A stand-in for a file manager in end-to-end tests: a small window that starts dragging one file
// as soon as it is pressed (XDND through Qt's own drag), and says on stdout whether the drop was
// taken. The test drives it with xdotool.
//
//   pelorin_drag_source FILE LEFT TOP
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QUrl>
#include <QWidget>
#include <cstdio>

namespace {

class DragSource final : public QWidget {
public:
    explicit DragSource(QString file) : m_file(std::move(file)) {
        setWindowTitle(QStringLiteral("Pelorin drag source"));
        resize(120, 80);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), QColor(40, 90, 160));
    }

    void mousePressEvent(QMouseEvent*) override {
        auto* drag = new QDrag(this);
        auto* mime = new QMimeData;
        mime->setUrls({QUrl::fromLocalFile(m_file)});
        drag->setMimeData(mime);
        const Qt::DropAction action = drag->exec(Qt::CopyAction);
        std::printf("%s\n", action == Qt::IgnoreAction ? "drop refused" : "drop taken");
        std::fflush(stdout);
    }

private:
    QString m_file;
};

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc < 4) {
        std::fprintf(stderr, "usage: pelorin_drag_source FILE LEFT TOP\n");
        return 2;
    }
    DragSource window(QString::fromLocal8Bit(argv[1]));
    window.move(QString::fromLocal8Bit(argv[2]).toInt(), QString::fromLocal8Bit(argv[3]).toInt());
    window.show();
    std::printf("ready\n");
    std::fflush(stdout);
    return QApplication::exec();
}
