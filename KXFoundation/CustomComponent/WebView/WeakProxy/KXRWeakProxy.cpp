// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/WebView/WeakProxy/KXRWeakProxy.h>

#include <QtCore/QDebug>
#include <QtCore/QHashFunctions>
#include <QtCore/QMetaMethod>

#include <array>
#include <optional>

namespace {

constexpr qsizetype mostArguments = 10; // QMetaMethod::invoke takes no more

bool isNamed(const QMetaMethod &method, const QByteArray &selector)
{
    return method.methodType() != QMetaMethod::Constructor
        && (selector.contains('(') ? method.methodSignature() == QMetaObject::normalizedSignature(selector.constData())
                                   : method.name() == selector);
}

// The arguments as the method's own types; none when one of them has no such form.
std::optional<QVariantList> converted(const QMetaMethod &method, const QVariantList &arguments)
{
    if (method.parameterCount() != arguments.size())
        return std::nullopt;
    QVariantList list = arguments;
    for (int i = 0; i < list.size(); ++i) {
        const QMetaType wanted = method.parameterMetaType(i);
        if (wanted == QMetaType::fromType<QVariant>())
            continue;
        if (!wanted.isValid() || !list[i].convert(wanted))
            return std::nullopt;
    }
    return list;
}

QVariant call(QObject *target, const QMetaMethod &method, QVariantList &arguments)
{
    std::array<QGenericArgument, mostArguments> generic;
    const QMetaType variantType = QMetaType::fromType<QVariant>();
    for (int i = 0; i < arguments.size(); ++i) {
        const QMetaType type = method.parameterMetaType(i);
        generic[std::size_t(i)] = QGenericArgument(
            type.name(), type == variantType ? static_cast<const void *>(&arguments[i]) : arguments[i].constData());
    }
    const QMetaType resultType = method.returnMetaType();
    const bool hasResult = resultType.isValid() && resultType.id() != QMetaType::Void;
    const bool isVariant = resultType == variantType;
    QVariant result = hasResult && !isVariant ? QVariant(resultType) : QVariant();
    void *const storage = isVariant ? static_cast<void *>(&result) : result.data();
    const QGenericReturnArgument returned =
        hasResult ? QGenericReturnArgument(resultType.name(), storage) : QGenericReturnArgument();
    const bool done = method.invoke(target, Qt::DirectConnection, returned, generic[0], generic[1], generic[2],
        generic[3], generic[4], generic[5], generic[6], generic[7], generic[8], generic[9]);
    return done ? result : QVariant();
}

} // namespace

std::shared_ptr<KXRWeakProxy> KXRWeakProxy::weakProxyWithTarget(QObject *target)
{
    return std::make_shared<KXRWeakProxy>(target);
}

KXRWeakProxy::KXRWeakProxy(QObject *target)
    : m_target(target)
{
}

QVariant KXRWeakProxy::invoke(const QByteArray &selector, const QVariantList &arguments) const
{
    QObject *const receiver = forwardingTargetForSelector(selector);
    if (!receiver) {
        Invocation invocation{selector, arguments, {}};
        forwardInvocation(invocation);
        return invocation.returnValue;
    }
    if (arguments.size() > mostArguments)
        return {};
    // From the end, so that a class's own methods come before those it inherits.
    for (int i = receiver->metaObject()->methodCount() - 1; i >= 0; --i) {
        const QMetaMethod method = receiver->metaObject()->method(i);
        if (!isNamed(method, selector))
            continue;
        if (std::optional<QVariantList> list = converted(method, arguments))
            return call(receiver, method, *list);
    }
    return {};
}

QObject *KXRWeakProxy::forwardingTargetForSelector(const QByteArray &) const
{
    return m_target;
}

KXRWeakProxy::MethodSignature KXRWeakProxy::methodSignatureForSelector(const QByteArray &) const
{
    return {QByteArrayLiteral("QObject*"), {}};
}

void KXRWeakProxy::forwardInvocation(Invocation &invocation) const
{
    invocation.returnValue = QVariant();
}

bool KXRWeakProxy::respondsToSelector(const QByteArray &selector) const
{
    if (!m_target)
        return false;
    const QMetaObject *const metaObject = m_target->metaObject();
    for (int i = 0; i < metaObject->methodCount(); ++i) {
        if (isNamed(metaObject->method(i), selector))
            return true;
    }
    return false;
}

bool KXRWeakProxy::isEqual(const QObject *object) const
{
    return object && m_target == object;
}

std::size_t KXRWeakProxy::hash() const
{
    return m_target ? qHash(m_target.data()) : 0;
}

const QMetaObject *KXRWeakProxy::class_() const
{
    return m_target ? m_target->metaObject() : nullptr;
}

const QMetaObject *KXRWeakProxy::superclass() const
{
    return m_target ? m_target->metaObject()->superClass() : nullptr;
}

bool KXRWeakProxy::isKindOfClass(const QMetaObject &metaObject) const
{
    return m_target && m_target->metaObject()->inherits(&metaObject);
}

bool KXRWeakProxy::isMemberOfClass(const QMetaObject &metaObject) const
{
    return class_() == &metaObject;
}

bool KXRWeakProxy::conformsToProtocol(const QByteArray &interfaceId) const
{
    if (!m_target || interfaceId.isEmpty())
        return false;
    // The cast knows the names of the classes, too.
    for (const QMetaObject *object = m_target->metaObject(); object; object = object->superClass()) {
        if (interfaceId == object->className())
            return false;
    }
    return m_target->qt_metacast(interfaceId.constData());
}

QString KXRWeakProxy::description() const
{
    return m_target ? QDebug::toString(m_target.data()) : QString();
}

QString KXRWeakProxy::debugDescription() const
{
    return description();
}
