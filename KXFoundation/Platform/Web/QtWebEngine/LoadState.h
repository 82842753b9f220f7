// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Core/KXError.h>

#include <QtCore/QUrl>

#include <functional>
#include <optional>

namespace kx {

/// How a load of the main frame ended.
struct LoadEnd {
    bool committed = true; ///< Whether its document had begun.
    std::optional<KXError> error; ///< None when it finished.
};

/// Follows the loads of a main frame through what the engine tells about them, and sees to it that each load that
/// begins ends exactly once. The engine skips the end of a load that another one replaces, and of one whose process
/// dies early; it may also tell the end of a stopped load when the next has already begun.
class LoadState {
public:
    using Report = std::function<void(const LoadEnd &)>;

    /// What is to become of a navigation that the engine asks about.
    enum class Answer { Allowed, Refused, Unsupported };

    /// `report` is called from inside the operations below.
    explicit LoadState(Report report);

    [[nodiscard]] bool isLoading() const { return m_phase != Phase::Idle; }
    /// What is being loaded; redirects included.
    [[nodiscard]] const QUrl &url() const { return m_url; }

    /// The application begins a load, which replaces one under way.
    void begin(const QUrl &url);
    /// The application stops what is under way.
    void stop();

    /// The engine asks about a navigation of the main frame; `redirect` if it goes on with a load under way.
    void navigationAsked(const QUrl &url, bool redirect, Answer answer);
    /// A navigation that the engine asked about is refused, because another order of the application took its place.
    void dropped(const QUrl &url);
    void started(const QUrl &url);
    /// The main frame's document begins, at this URL.
    void documentStarted(const QUrl &url);
    void succeeded();
    void stopped(const QUrl &url);
    void failed(int netError, const QUrl &url);
    /// Returns whether a load was under way, which then has been reported.
    bool processTerminated();

private:
    enum class Phase { Idle, Provisional, Committed };

    void start(const QUrl &url);
    void end(const std::optional<KXError> &error);

    Report m_report;
    Phase m_phase = Phase::Idle;
    QUrl m_url;
    Answer m_answer = Answer::Allowed; // the latest about the load under way
    std::optional<QUrl> m_stoppedDocument; // the engine still has to tell the end of this stopped load
};

} // namespace kx
