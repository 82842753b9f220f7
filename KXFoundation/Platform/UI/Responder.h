// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/qglobal.h>

namespace kx {

/// A link of the chain along which questions travel from a view upwards: views, controllers and windows. The chain can
/// be walked; events themselves travel from widget to widget, as Qt has it.
class KX_UI_EXPORT Responder {
public:
    virtual ~Responder();
    Q_DISABLE_COPY_MOVE(Responder)

    /// The next link, borrowed; null at the end.
    [[nodiscard]] virtual Responder *nextResponder() const;

protected:
    Responder();
};

} // namespace kx
