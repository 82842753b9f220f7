// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/AccessibleControl.h>

namespace kx {

class ImageView;

/// What assistive technology meets for an image view: a picture with its description, which it presses if that does
/// anything.
class AccessibleImage : public AccessibleControl, public QAccessibleImageInterface {
public:
    /// Lets the application know of it. Called by every image view.
    static void install();

    explicit AccessibleImage(ImageView &view);

    void *interface_cast(QAccessible::InterfaceType type) override;
    [[nodiscard]] QString imageDescription() const override;
    [[nodiscard]] QSize imageSize() const override;
    [[nodiscard]] QPoint imagePosition() const override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString &action) override;

private:
    [[nodiscard]] ImageView &view() const;
};

} // namespace kx
