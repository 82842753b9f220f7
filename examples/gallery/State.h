// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

#include <functional>

class QWidget;

/// A control in one of its states.
struct State {
    QString family; ///< the control's class
    QString name; ///< unique in the family
    QWidget *picture = nullptr; ///< what a picture shows: the control with some room around it, or a window
    /// Brings the control into the state; called once it is on the screen. Empty for a state that it is in from the
    /// start.
    std::function<void()> enter;
    /// The state of the family that has the same looks, on purpose. Empty for looks that no other one has.
    QString looksLike;

    /// "PNButton-with-a-hover"
    [[nodiscard]] QString fileName() const { return QString(family + u'-' + name).replace(u' ', u'-'); }
};
