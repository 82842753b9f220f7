// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/View.h>

namespace kx {

View::View(QWidget *parent)
    : ViewOn<QWidget>(parent)
{
}

View::~View() = default;

} // namespace kx
