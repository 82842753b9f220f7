// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/ViewOn.h>

namespace kx {

/// A plain view: an empty, transparent area that can hold subviews and be subclassed. Its frame is empty at first.
class KX_UI_EXPORT View : public ViewOn<QWidget> {
    Q_OBJECT
    Q_PROPERTY(QRectF frame READ frame WRITE setFrame DESIGNABLE false)
    Q_PROPERTY(bool awakesFromNib READ awakesFromNib WRITE setAwakesFromNib DESIGNABLE false)

public:
    explicit View(QWidget *parent = nullptr);
    ~View() override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace kx
