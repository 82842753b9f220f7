// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QObject>

#include <memory>

/// An object of a class without run-time type information.
[[nodiscard]] std::unique_ptr<QObject> untypedObject();
