// SPDX-License-Identifier: MIT
#include "Fuzz.h"

#include <KXFoundation/Platform/UI/LayoutConstraint.h>
#include <KXFoundation/Platform/UI/View.h>

#include <QtCore/QRegularExpression>
#include <QtWidgets/QApplication>

using kx::LayoutConstraint;
using kx::fuzz::check;

namespace {

/// What is a format, said in another way than the reader's.
QRegularExpression grammar()
{
    const QString number = QStringLiteral("(?:gap|-?(?:[0-9]+[.]?[0-9]*|[.][0-9]+))");
    const QString size = QStringLiteral("(?:==)?(?:a|b|%1)").arg(number);
    const QString view = QStringLiteral("\\[[ab](?:\\(%1(?:,%1)*\\))?\\]").arg(size);
    const QString distance = QStringLiteral("(?:-%1-)?").arg(number);
    return QRegularExpression(QStringLiteral("\\A(?:[HV]:)?(?:\\|%1)?%2(?:%1%2)*(?:%1\\|)?\\z").arg(distance, view));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 0;
    static const QApplication application(argc, nullptr);
    static const QRegularExpression format = grammar();
    if (size > 300) // longer numbers are beyond a double
        return 0;
    kx::View above;
    above.setFrame(QRectF(0, 0, 300, 200));
    kx::View a(&above);
    kx::View b(&above);

    const QString text = QString::fromLatin1(reinterpret_cast<const char *>(data), qsizetype(size));
    const auto made = LayoutConstraint::constraintsWithVisualFormat(
        text, {{QStringLiteral("gap"), 6}}, {{QStringLiteral("a"), &a}, {QStringLiteral("b"), &b}});
    const bool isFormat = format.match(text).hasMatch();
    check(isFormat || made.isEmpty(), "other texts make nothing");
    // One view without a size and without an edge has nothing to bind.
    check(!isFormat || !made.isEmpty() || text.endsWith(QStringLiteral("[a]")) || text.endsWith(QStringLiteral("[b]")),
        "a format makes constraints");

    LayoutConstraint::activateConstraints(made);
    for (const kx::LayoutConstraintRef &constraint : made)
        check(constraint && constraint->isActive(), "every constraint is active");
    return 0;
}
