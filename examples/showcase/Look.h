// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/Color.h>

#include <QtCore/QString>

/// The player's colours and fonts, and how it writes times.
namespace look {

inline const kx::Color window = QColor(22, 24, 29);
inline const kx::Color chrome = QColor(30, 33, 40);
inline const kx::Color raised = QColor(52, 57, 68);
inline const kx::Color raisedMore = QColor(66, 72, 86);
inline const kx::Color overlay = QColor(14, 16, 20, 200);
inline const kx::Color text = QColor(232, 235, 241);
inline const kx::Color faintText = QColor(146, 153, 166);
inline const kx::Color accent = QColor(255, 46, 67);
inline const kx::Color accentDark = QColor(150, 30, 90);
inline const kx::Color gold = QColor(255, 190, 84);
inline const kx::Color link = QColor(122, 190, 255);

inline const QString fontName = QStringLiteral("DejaVu Sans");

/// Makes the application dark, and gives buttons and labels the font that they name by default.
void apply();

/// "0:07", "1:02:03".
[[nodiscard]] QString time(double seconds);

} // namespace look
