// SPDX-License-Identifier: MIT
#include "Fuzz.h"

#include <KXFoundation/Category/StringUrlEncode.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <algorithm>

using kx::fuzz::check;

// Any bytes, as UTF-8 and as UTF-16 (which may have halves of pairs).
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QString units(qsizetype(size / 2), Qt::Uninitialized);
    std::copy_n(data, size / 2 * 2, reinterpret_cast<std::uint8_t *>(units.data()));
    for (const QString &text : {QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size)), units}) {
        const bool isText = QStringView(text).isValidUtf16();
        const QString coded = kx::percentCodingString(text);
        check(!coded.isNull(), "a coded text is not null");
        check(kx::DecodeUtf8String(coded) == (isText ? text : QString()), "decoding undoes coding");
        for (const char reserved : {'?', '!', '@', '#', '$', '^', '&', '*', '+', ',', ':', ';', '=', '\'', '"', '`',
                 '<', '>', '(', ')', '[', ']', '{', '}', '/', '\\', '|', ' '})
            check(!coded.contains(QLatin1Char(reserved)), "no reserved character is left");

        const QString decoded = kx::DecodeUtf8String(text);
        check(!decoded.isNull(), "a decoded text is not null");
        check(decoded.isEmpty() || decoded.toUtf8() == QByteArray::fromPercentEncoding(text.toUtf8()),
            "what is decoded is right");
    }
    return 0;
}
