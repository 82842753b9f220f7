// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>
#include <KXFoundation/Platform/Core/Published.h>

#include <QtCore/QHash>
#include <QtCore/QString>

#include <functional>
#include <memory>

class KXActionItem;

/// The handlers of one URL scheme, by path. Handlers may be registered in any thread, also while actions are
/// dispatched; an action that is under way goes on with the table that it began with.
class KX_CORE_EXPORT KXActionProcessor {
public:
    /// Called in the thread that dispatches the action.
    using Handler = std::function<void(const KXActionItem &item)>;
    /// Never changes once made; replaced whole instead.
    using HandlerMap = std::shared_ptr<const QHash<QString, Handler>>;

    /// Answers actions of exactly this scheme, case included.
    explicit KXActionProcessor(QString scheme);
    ~KXActionProcessor();
    Q_DISABLE_COPY_MOVE(KXActionProcessor)

    [[nodiscard]] const QString &scheme() const { return m_scheme; }
    /// Not while another thread dispatches.
    void setScheme(const QString &scheme) { m_scheme = scheme; }

    /// Null until a handler has been registered.
    [[nodiscard]] HandlerMap acitonHandlerMap() const;
    void setAcitonHandlerMap(HandlerMap handlers);

    /// Replaces the path's handler; an empty one removes it. A null path is ignored.
    void registerHandler(Handler handler, const QString &forPath);

    /// The handler of exactly this path (nothing is normalised), or an empty one.
    [[nodiscard]] Handler handlerForPath(const QString &path) const;

private:
    QString m_scheme;
    kx::Published<QHash<QString, Handler>> m_handlers;
};
