// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/UIBase/View/PNBaseView.h>

namespace kx {
class Image;
class ImageView;
} // namespace kx
class KXLabel;

/// The small frame above the playback bar that tells what is where the pointer is, and when.
class HoverPreview : public PNBaseView {
    Q_OBJECT
public:
    explicit HoverPreview(QWidget *parent = nullptr);

    /// Shows the frame and the time with the middle above `x`, as far as the superview has room, `y` being the lower
    /// edge. Without a frame it shows the time alone.
    void showAt(double x, double y, const kx::Image &frame, double seconds);

    [[nodiscard]] bool hasFrame() const;
    [[nodiscard]] QString time() const;

private:
    kx::ImageView *m_frame;
    KXLabel *m_time;
};
