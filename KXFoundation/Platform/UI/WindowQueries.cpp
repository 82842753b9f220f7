// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/WindowQueries.h>

#include <QtWidgets/QWidget>

namespace kx {

bool ignoresMouseEvents(const QWidget *window)
{
    return window
        && (window->testAttribute(Qt::WA_TransparentForMouseEvents)
            || window->windowFlags().testFlag(Qt::WindowTransparentForInput));
}

bool isModalPanel(const QWidget *window)
{
    return window && window->windowModality() == Qt::ApplicationModal;
}

} // namespace kx
