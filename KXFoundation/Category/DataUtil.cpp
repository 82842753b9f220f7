// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/DataUtil.h>

#include <QtCore/QCryptographicHash>

namespace kx {

QString md5Hash(const QByteArray &data)
{
    return QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Md5).toHex());
}

} // namespace kx
