// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/qglobal.h>

namespace kx {

class StandardWindowButton;

/// What a superview of standard window buttons answers, so that all of them show their symbols while the pointer is
/// over any of them.
class KX_UI_EXPORT StandardWindowButtonGroup {
public:
    virtual ~StandardWindowButtonGroup();
    Q_DISABLE_COPY_MOVE(StandardWindowButtonGroup)

    /// Asked whenever `button` paints itself. A change of the answer is followed by a repaint of the buttons, which the
    /// group asks for.
    [[nodiscard]] virtual bool _mouseInGroup(const StandardWindowButton *button) const = 0;

protected:
    StandardWindowButtonGroup();
};

} // namespace kx
