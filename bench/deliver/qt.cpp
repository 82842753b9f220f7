// SPDX-License-Identifier: MIT
// A window and a widget of Qt's own.
#include "Strokes.h"

#include <QtWidgets/QApplication>

namespace {

class Content : public QWidget {
public:
    int told = 0;

protected:
    void mousePressEvent(QMouseEvent *) override { ++told; }
    void mouseMoveEvent(QMouseEvent *) override { ++told; }
    void mouseReleaseEvent(QMouseEvent *) override { ++told; }
};

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QMainWindow window;
    auto *content = new Content;
    content->setMouseTracking(true);
    show(window, content);
    return printTimeOfAnEvent(window) == content->told ? 0 : 1;
}
