// SPDX-License-Identifier: MIT
// A program with windows: the UI component, on whatever platform plugin there is.
#include <KXFoundation/CustomComponent/PNButton.h>
#include <KXFoundation/RichTextView/KXLabel.h>
#include <KXFoundation/UIBase/View/PNBaseView.h>

#include <QtGui/QImage>
#include <QtWidgets/QApplication>
#include <QtWidgets/QVBoxLayout>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    PNBaseView view(QRectF(0, 0, 100, 60));
    view.setBackgroundColor(QColor(Qt::blue));
    auto *layout = new QVBoxLayout(&view);
    auto *label = new KXLabel(QStringLiteral("title"), &view);
    layout->addWidget(label);
    QImage red(20, 20, QImage::Format_ARGB32_Premultiplied);
    red.fill(Qt::red);
    auto *button = new PNButton(&view);
    button->setNormalImage(red);
    layout->addWidget(button);

    const QImage shown = view.grab().toImage();
    const QPoint middle = button->geometry().center() * shown.devicePixelRatio();
    std::printf("the button shows %s on %s, the label is %d wide\n", qPrintable(shown.pixelColor(middle).name()),
        qPrintable(shown.pixelColor(1, 1).name()), label->width());
    return shown.pixelColor(middle) == QColor(Qt::red) && shown.pixelColor(1, 1) == QColor(Qt::blue)
            && label->width() > 0
        ? 0
        : 1;
}
