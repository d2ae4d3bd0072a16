#pragma once

#include <string>
#include <utility>

#include "web/Internet.h"

namespace tallory {

// The shared library the fetcher loads the first time it fetches.
inline constexpr const char* kCurlLibrary = "libcurl.so.4";

// The program's only network code: a synchronous HTTP(S) GET through libcurl. It honours the
// system's proxy settings (the http_proxy, https_proxy and no_proxy variables), follows the
// redirects the library follows, and asks every cache on the way for a fresh copy. A fetch is
// given up, with a message saying why, when the server does not take the connection in time, when
// the whole fetch takes too long or the reply grows too large (FetchLimits), and quietly when the
// person cancels it.
//
// The library (and the thirty-odd libraries it brings) is loaded at the first fetch, not at
// program start: only web registration needs it, and every other command would pay for mapping it.
// When it cannot be loaded the person is told once per fetcher, and every fetch fails as an
// unreachable server does (an empty text).
class CurlFetcher : public UrlFetcher {
  public:
    explicit CurlFetcher(std::string library = kCurlLibrary, FetchLimits limits = {})
        : library_(std::move(library)), limits_(limits) {}

    std::string OpenUrlText(const std::string& url, Host& host) override;

  private:
    std::string library_;
    FetchLimits limits_;
    bool toldMissing_ = false;
};

}  // namespace tallory
