// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <QtCore/QByteArray>
#include <QtCore/QCoreApplication>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QVariant>

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

/// Stands for an object without keeping it alive. What is sent to the proxy goes to the object; once the object is gone
/// it is swallowed and gives zero, false or nothing. Give the proxy to those who would otherwise hold the object too
/// long.
///
/// Messages go by member function, forward(), checked by the compiler, or by name, invoke(), through the object's
/// meta-object. Use the proxy on the thread that its target lives on; an object is gone for it as soon as its QObject
/// destructor runs, and forward() reaches a class no longer once that class's own destructor has run.
/// From other threads only post() is safe, which delivers on the main thread and finds out there whether the target,
/// which must live there, is still alive.
class KX_CORE_EXPORT KXRWeakProxy {
public:
    /// What a method takes and returns, as type names in the meta-object's spelling.
    struct MethodSignature {
        QByteArray returnType;
        QList<QByteArray> parameterTypes;

        friend bool operator==(const MethodSignature &, const MethodSignature &) = default;
    };

    /// A message by name: the name of an invokable method, or its signature ("seek(double)") where overloads differ.
    struct Invocation {
        QByteArray selector;
        QVariantList arguments;
        QVariant returnValue;
    };

    [[nodiscard]] static std::shared_ptr<KXRWeakProxy> weakProxyWithTarget(QObject *target);
    explicit KXRWeakProxy(QObject *target);

    /// Null once the target is gone.
    [[nodiscard]] QObject *target() const { return m_target; }
    void setTarget(QObject *target) { m_target = target; }

    /// Calls a member function of the target and returns its result as a value; a value-initialised result (zero, an
    /// empty handle) when the target is gone or is no `Class`.
    template <class Class, class Member, class... Arguments>
    auto forward(Member Class::*operation, Arguments &&...arguments) const
    {
        using Result = std::remove_cvref_t<std::invoke_result_t<Member Class::*, Class &, Arguments...>>;
        auto *const receiver = dynamic_cast<std::remove_const_t<Class> *>(m_target.data());
        if constexpr (std::is_void_v<Result>) {
            if (receiver)
                std::invoke(operation, *receiver, std::forward<Arguments>(arguments)...);
        } else {
            return receiver ? Result(std::invoke(operation, *receiver, std::forward<Arguments>(arguments)...))
                            : Result();
        }
    }

    /// forward() from any thread: copies the arguments, returns at once, and delivers from the main thread's event loop
    /// if the target is still alive then. The proxy itself need not live that long. Dropped without an application
    /// object.
    template <class Class, class Member, class... Arguments>
    void post(Member Class::*operation, Arguments &&...arguments) const
    {
        if (QCoreApplication *application = QCoreApplication::instance()) {
            QMetaObject::invokeMethod(
                application,
                [proxy = *this, operation,
                    ... copies = std::decay_t<Arguments>(std::forward<Arguments>(arguments))]() mutable {
                    proxy.forward(operation, std::move(copies)...);
                },
                Qt::QueuedConnection);
        }
    }

    /// Calls an invokable method, slot or signal of the target by name, at once, with the arguments converted to its
    /// parameter types. Returns its result; an invalid value if it returns nothing, if the target is gone, or if it has
    /// no method of that name that takes these arguments. At most ten arguments.
    QVariant invoke(const QByteArray &selector, const QVariantList &arguments = {}) const;

    /// The object that messages go to: the target.
    [[nodiscard]] QObject *forwardingTargetForSelector(const QByteArray &selector) const;

    /// The signature of a message that has no target: whatever the selector, it takes nothing and returns an object.
    [[nodiscard]] MethodSignature methodSignatureForSelector(const QByteArray &selector) const;

    /// Swallows a message that has no target: only clears its return value.
    void forwardInvocation(Invocation &invocation) const;

    /// Whether the target has an invokable method of this name or signature.
    [[nodiscard]] bool respondsToSelector(const QByteArray &selector) const;
    /// Whether the target is this very object; false for null.
    [[nodiscard]] bool isEqual(const QObject *object) const;
    /// Equal for proxies of the same target; 0 once it is gone.
    [[nodiscard]] std::size_t hash() const;
    /// The meta-object of the target's class and of the class above it; null when there is none.
    [[nodiscard]] const QMetaObject *class_() const;
    [[nodiscard]] const QMetaObject *superclass() const;
    /// Whether the target's class is this one or inherits it, and whether it is exactly this one.
    [[nodiscard]] bool isKindOfClass(const QMetaObject &metaObject) const;
    [[nodiscard]] bool isMemberOfClass(const QMetaObject &metaObject) const;
    /// Whether the target's class names the interface in Q_INTERFACES, by its Q_DECLARE_INTERFACE identifier. The name
    /// of a QObject class is no interface.
    [[nodiscard]] bool conformsToProtocol(const QByteArray &interfaceId) const;
    /// The target's class, address and object name for people; null once it is gone. The second is the same text.
    [[nodiscard]] QString description() const;
    [[nodiscard]] QString debugDescription() const;
    /// Always true.
    [[nodiscard]] bool isProxy() const { return true; }

private:
    QPointer<QObject> m_target;
};
