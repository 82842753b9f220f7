// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>
#include <KXFoundation/Platform/Core/KXError.h>

#include <QtCore/QString>

#include <memory>

class KXActionItem;
class KXActionProcessor;

/// The process-wide list of action processors, and dispatch: an action goes to the newest processor of its scheme,
/// there to the handler of its path. The host of the URL plays no part. Everything here may be called from any thread,
/// also at the same time; handlers run in the thread that dispatches.
class KX_CORE_EXPORT KXActionManager {
public:
    KXActionManager() = delete;

    enum ErrorCode : qint64 {
        CannotDispatch = -100, ///< No URL, or no processor or handler for it.
        NoItem = -101,
    };

    /// Puts the processor before all others; it is shared until the process ends. An older one of the same scheme stays
    /// in the list but is not asked any more. Null is ignored.
    static void registerProcessor(const std::shared_ptr<KXActionProcessor> &processor);
    /// Deliberate: the scheme is not used, the processor answers its own.
    static void registerProcessor(const std::shared_ptr<KXActionProcessor> &processor, const QString &forScheme);

    /// Dispatches the action that the text stands for. True when a handler was called, whatever it did. Otherwise
    /// false, and `error`, unless it is null, says why; on success it is left as it was. A text from outside can hang
    /// the handler's thread: see the danger at KXActionItem.
    static bool handleActionWithURL(const QString &url, KXError *error = nullptr);
    /// The same for an item; null is an error (NoItem).
    static bool handleActionWithItem(const KXActionItem *item, KXError *error = nullptr);

    /// The domain of these errors, a reverse-DNS name that belongs to the application; "example.kxfoundation.action" as
    /// long as it gives none. Codes are ErrorCode. A null or empty domain brings the default back.
    [[nodiscard]] static QString errorDomain();
    static void setErrorDomain(const QString &domain);
};
