// SPDX-License-Identifier: MIT
#include "GalleryWindow.h"

#include "ButtonsPage.h"
#include "MediaPage.h"
#include "TextPage.h"
#include "WindowPage.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtGui/QWindow>
#include <QtWidgets/QVBoxLayout>

GalleryWindow::GalleryWindow()
    : m_pages{new ButtonsPage, new MediaPage, new TextPage, new WindowPage}
{
    setWindowTitle(QStringLiteral("KXFoundation gallery"));
    auto *all = new QWidget;
    auto *layout = new QVBoxLayout(all);
    for (GalleryPage *page : std::as_const(m_pages))
        layout->addWidget(page);
    setWidget(all);
    setWidgetResizable(true);
    resize(1000, 760);
}

QList<State> GalleryWindow::states() const
{
    QList<State> states;
    for (const GalleryPage *page : m_pages)
        states += page->states();
    return states;
}

void GalleryWindow::showAndSettle(QWidget &widget)
{
    widget.window()->show();
    const QWindow *window = widget.window()->windowHandle();
    const QDeadlineTimer deadline(std::chrono::seconds(5));
    while (!window->isExposed() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    settle();
}

void GalleryWindow::settle()
{
    // Exposing a window updates the tracking areas of its views, which may make them ask for a repaint, which may bring
    // a shadow.
    for (int turn = 0; turn < 4; ++turn)
        QCoreApplication::processEvents();
}
