// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Web/QtWebEngine/MessageTransport.h>
#include <KXFoundation/Platform/Web/WebViewConfiguration.h>

#include <memory>
#include <vector>

class QWebEngineProfile;

namespace kx {

/// An engine profile with everything that a configuration puts into pages.
struct PageProfile {
    std::shared_ptr<QWebEngineProfile> profile;
    std::shared_ptr<const MessageTransport> transport; ///< Its scripts are the profile's first.
};

/// Finds the engine profile that a configuration asks for.
///
/// In this engine scripts and scheme handlers belong to a profile, not to a page, and those of a page come too late for
/// frames in other processes. So there is one profile for each process pool and set of scripts, handler names and
/// schemes; it lives as long as the pool, or as its pages. Pages share cookies, storage and cache exactly where they
/// share a profile. Profiles are off the record: nothing that a page leaves behind outlives the program.
class ProfileStore {
public:
    [[nodiscard]] PageProfile profileFor(const std::shared_ptr<WebViewConfiguration> &configuration);

    void clear() { m_entries.clear(); }

private:
    struct Content {
        QList<UserScript> scripts;
        QStringList handlerNames;
        QMap<QString, URLSchemeHandler *> schemes;
        friend bool operator==(const Content &, const Content &) = default;
    };
    struct Entry {
        std::weak_ptr<const void> owner; ///< The pool, or the configuration if it has none.
        std::vector<std::weak_ptr<URLSchemeHandler>> handlers; ///< A dead one's address may come again.
        Content content;
        PageProfile profile;
    };

    [[nodiscard]] static PageProfile makeProfile(const Content &content);

    std::vector<Entry> m_entries;
};

} // namespace kx
