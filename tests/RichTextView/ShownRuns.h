// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/RichTextView/KXAttributedString.h>
#include <KXFoundation/RichTextView/KXRichTextView.h>

#include <QtGui/QFont>
#include <QtGui/QFontMetricsF>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

#include <memory>

using Run = std::shared_ptr<KXAttributedString>;

inline QFont textFont()
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(20);
    return font;
}

inline double advance(const QString &text)
{
    return QFontMetricsF(textFont()).horizontalAdvance(text);
}

inline double lineHeight()
{
    const QFontMetricsF metrics(textFont());
    return std::ceil(metrics.ascent()) + std::ceil(metrics.descent());
}

inline Run plainRun(const QString &text)
{
    return std::make_shared<KXAttributedString>(text);
}

/// Puts its text into the list when it is clicked.
inline Run linkRun(const QString &text, QStringList &clicked)
{
    const Run run = plainRun(text);
    run->setOnClick([&clicked](const Run &hit) { clicked.append(hit->string()); });
    return run;
}

/// A rich text view of 300 x 100 in the top left corner of a shown, active window of 400 x 300.
class ShownView {
public:
    ShownView()
    {
        window.setFont(textFont());
        window.setGeometry(100, 100, 400, 300);
        view->setGeometry(0, 0, 300, 100);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("The window has not become active");
    }

    QWidget window;
    QPointer<KXRichTextView> view = new KXRichTextView(&window); // the window's own
};
