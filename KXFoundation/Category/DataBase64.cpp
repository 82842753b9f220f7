// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/DataBase64.h>

#include "Base64Codec.h"

#include <algorithm>

namespace kx {

namespace {

const unsigned char *bytesOf(const QByteArray &data)
{
    return reinterpret_cast<const unsigned char *>(data.constData());
}

} // namespace

QByteArray dataFromBase64String(const QString &text)
{
    const QStringView units(text);
    if (std::any_of(units.begin(), units.end(), [](QChar unit) { return unit.unicode() >= 0x80; }))
        return {0, Qt::Uninitialized};
    const QByteArray ascii = text.toLatin1();
    const auto length = static_cast<std::size_t>(ascii.size());
    QByteArray data(static_cast<qsizetype>(base64::decodedCapacity(length)), Qt::Uninitialized);
    auto *out = reinterpret_cast<unsigned char *>(data.data());
    data.truncate(static_cast<qsizetype>(base64::decode(bytesOf(ascii), length, out, base64::bestKernel())));
    return data;
}

QString base64EncodedString(const QByteArray &data)
{
    const auto length = static_cast<std::size_t>(data.size());
    QByteArray text(static_cast<qsizetype>(base64::encodedCapacity(length, true)), Qt::Uninitialized);
    text.truncate(
        static_cast<qsizetype>(base64::encode(bytesOf(data), length, true, text.data(), base64::bestKernel())));
    return QString::fromLatin1(text);
}

QByteArray reversedData(const QByteArray &data)
{
    QByteArray reversed(data.size(), Qt::Uninitialized);
    std::reverse_copy(data.begin(), data.end(), reversed.data());
    return reversed;
}

} // namespace kx
