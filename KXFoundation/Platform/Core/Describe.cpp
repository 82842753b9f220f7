// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Describe.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace kx {

QString describe(const QString &text)
{
    return text.isNull() ? QStringLiteral("(null)") : text;
}

QString describe(QLatin1String text)
{
    return describe(text.isNull() ? QString() : QString(text));
}

QString describe(const QUrl &url)
{
    return url.isEmpty() ? QStringLiteral("(null)") : url.toString(QUrl::FullyEncoded);
}

QString describe(const QStringList &list)
{
    return u"(" + list.join(u", ") + u")";
}

QString describe(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Null:
    case QJsonValue::Undefined: return QStringLiteral("(null)");
    case QJsonValue::String: return value.toString();
    case QJsonValue::Object: return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    case QJsonValue::Array: return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    default: return value.toVariant().toString();
    }
}

QString describeVariant(const QVariant &value)
{
    if (!value.isValid() || value.isNull())
        return QStringLiteral("(null)");
    if (value.canConvert<QString>())
        return value.toString();
    return describe(QJsonValue::fromVariant(value));
}

} // namespace kx
