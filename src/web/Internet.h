#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "common/Host.h"

namespace tallory {

// How long and how much a fetch may take before it is given up. A server that never answers, or
// answers without end, must not hold the program or fill its memory.
struct FetchLimits {
    std::chrono::milliseconds connect{15'000};  // until the server has taken the connection
    std::chrono::milliseconds total{120'000};   // the whole fetch, reply and all
    size_t bytes = 16 * 1024 * 1024;            // the reply's body
};

// Why the last fetch was given up; None when it ran to its end (or failed in an ordinary way: an
// unreachable host, a bad address).
enum class FetchStop { None, ConnectTime, TotalTime, TooLarge, Cancelled };

// Where a text comes from over the network. The program has one real fetcher (libcurl); a test can
// hand the registration code any other.
class UrlFetcher {
  public:
    virtual ~UrlFetcher() = default;

    // The whole body of the reply to a GET of `url`, as 8-bit text; empty when the fetch fails in
    // any way. The host's events run once per chunk of at most 2048 bytes. An error page of a
    // server is a body like any other: callers recognise one by its text.
    virtual std::string OpenUrlText(const std::string& url, Host& host) = 0;

    // Asks the fetch under way (called from the events it lets run) to stop; it then gives an
    // empty text and Stopped() says Cancelled. The next fetch starts afresh.
    void Cancel() { cancelAsked_ = true; }
    // Why the last fetch was given up. A fetch given up has told the person why, except when they
    // cancelled it themselves.
    FetchStop Stopped() const { return stopped_; }

    // Forgets a cancel and the last stop: at the start of each fetch, and of a run of fetches
    // whose later steps ask Stopped() when some of them read no network at all.
    void Reset() {
        cancelAsked_ = false;
        stopped_ = FetchStop::None;
    }

  protected:
    void BeginFetch() { Reset(); }
    bool CancelAsked() const { return cancelAsked_; }
    void SetStopped(FetchStop why) { stopped_ = why; }

  private:
    bool cancelAsked_ = false;
    FetchStop stopped_ = FetchStop::None;
};

// What the person is told when a fetch of `url` was given up for `why` (empty for None and
// Cancelled, which need no message).
std::string FetchStopMessage(FetchStop why, const FetchLimits& limits, const std::string& url);

// A local file read as a reply would be: every line followed by CR LF; what was read so far when
// the file cannot be read (empty when it cannot be opened).
std::string ReadLocalText(const std::string& path);

}  // namespace tallory
