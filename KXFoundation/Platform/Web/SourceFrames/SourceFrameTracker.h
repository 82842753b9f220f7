// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Web/NavigationAction.h>

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QUrl>

#include <chrono>
#include <functional>
#include <optional>

namespace kx {

/// What the engine knows about a navigation before it happens.
struct NavigationRequest {
    /// How the engine classes it. Its words are not to be trusted further than SourceFrameTracker does: it calls
    /// scripted loads links, and client-side replacements redirects.
    enum class Kind { Link, Typed, Form, BackForward, Reload, Other, Redirect };
    enum class Target { MainFrame, SubFrame, NewWindow };

    QUrl url;
    Kind kind = Kind::Other;
    Target target = Target::MainFrame;
};

struct NavigationSource {
    FrameInfo frame;
    /// The request continues one that was asked about before, whose source it inherits.
    bool serverRedirect = false;
};

/// Works out which frame a navigation comes from, for an engine that does not tell.
///
/// Scripts in every frame announce what can start a navigation (see source_frames.js); the engine then asks about the
/// navigation itself. A navigation of the main frame that the main frame's document did not announce was started by a
/// frame of another origin; one that it did announce by itself or by a frame of its own origin, told apart by clicks,
/// forms and the running script. Where nothing tells, a frame of the same origin counts as the main frame (it could run
/// its script there), any other as a sub frame. docs/source-frames.md lists what is not told apart.
///
/// One tracker serves one page. Not thread-safe.
class SourceFrameTracker {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    /// Announcements are forgotten after this long.
    static constexpr std::chrono::seconds SignalLifetime{2};

    explicit SourceFrameTracker(Clock clock = [] { return std::chrono::steady_clock::now(); });

    /// A function expression of one argument, `send(text)`: call it in an isolated world of every frame at document
    /// creation, and pass every text in its order of arrival to signal().
    [[nodiscard]] static QString isolatedWorldScript();
    /// A function expression without arguments: call it in the page's own world of every frame at document creation.
    /// It leaves nothing behind that the page can see.
    [[nodiscard]] static QString pageWorldScript();

    /// Unknown texts are ignored. A new main document forgets everything that came before.
    void signal(const QString &text);

    /// The source of a navigation that is about to happen; ask once for each, in the engine's order, server redirects
    /// included. Uses up the announcements that belong to it.
    [[nodiscard]] NavigationSource source(const NavigationRequest &request);

    /// The main frame's load has finished, failed or been stopped: what follows is no redirect of it. The engine
    /// reports the end of a replaced load before it asks about the replacement.
    void mainFrameLoadEnded();

private:
    enum class Role { Main, Sub };
    enum class Caller { None, Unknown, Main, Sub }; // whose script is running
    enum class SignalKind { Navigate, Caller, Click, Form };
    struct Signal {
        SignalKind kind = SignalKind::Navigate;
        Role frame = Role::Main; ///< The frame that sent it.
        bool user = false; ///< Navigate, Click: by the user's hand.
        Caller caller = Caller::None;
        QUrl url; ///< Form: what comes before the query, for the entries of a GET form go there.
        std::chrono::steady_clock::time_point time;
    };
    enum class MainDocument { Unknown, Announces, Silent };

    void startDocument(Role frame, bool announces);
    [[nodiscard]] Role sourceFor(const NavigationRequest &request);
    [[nodiscard]] Role announcedSource(const NavigationRequest &request, qsizetype navigate);
    [[nodiscard]] std::optional<Role> gestureSource(const NavigationRequest &request);
    [[nodiscard]] qsizetype find(SignalKind kind, Role frame, const QUrl &url) const;
    [[nodiscard]] qsizetype lastGestureFor(const NavigationRequest &request, qsizetype end) const;
    [[nodiscard]] qsizetype lastUserGesture(qsizetype end) const;
    void useUp(qsizetype last);
    void forgetExpired(std::chrono::steady_clock::time_point now);

    Clock m_clock;
    QList<Signal> m_signals; // in order of arrival
    MainDocument m_mainDocument = MainDocument::Unknown;
    bool m_subFrames = false; // the main document has had any
    bool m_silentSubFrames = false;
    std::optional<Role> m_mainInFlight; // the source of the load that redirects may continue
    std::optional<Role> m_subInFlight;
};

} // namespace kx
