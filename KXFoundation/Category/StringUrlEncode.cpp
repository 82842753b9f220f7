// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/StringUrlEncode.h>

#include <KXFoundation/Category/DataUtil.h>
#include <KXFoundation/Platform/Core/PercentEncoding.h>

#include <QtCore/QStringView>

#include <algorithm>

namespace kx {

namespace {

constexpr AsciiSet reserved{"?!@#$^&%*+,:;='\"`<>()[]{}/\\| "};

// "", and not null.
QString emptyText()
{
    return QStringLiteral("");
}

} // namespace

QString md5Hash(const QString &text)
{
    QByteArray bytes = text.toUtf8();
    if (const qsizetype nul = bytes.indexOf('\0'); nul >= 0)
        bytes.truncate(nul);
    return md5Hash(bytes);
}

QString percentCodingString(const QString &text)
{
    const QStringView units(text);
    if (units.isEmpty() || !isPaired(units))
        return emptyText();
    const auto isReserved = [](QChar unit) { return reserved.contains(unit.unicode()); };
    const auto escapes = std::count_if(units.begin(), units.end(), isReserved);
    if (escapes == 0)
        return text;

    QString coded(units.size() + 2 * escapes, Qt::Uninitialized);
    QChar *out = coded.data();
    constexpr char16_t digits[] = u"0123456789ABCDEF";
    for (const QChar unit : units) {
        if (isReserved(unit)) {
            *out++ = u'%';
            *out++ = digits[unit.unicode() >> 4];
            *out++ = digits[unit.unicode() & 0xF];
        } else {
            *out++ = unit;
        }
    }
    return coded;
}

QString DecodeUtf8String(const QString &text)
{
    if (text.isEmpty() || !isPaired(text))
        return emptyText();
    return removePercentEncoding(text).value_or(emptyText());
}

} // namespace kx
