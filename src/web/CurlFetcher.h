#pragma once

#include "web/Internet.h"

namespace tallory {

// The program's only network code: a synchronous HTTP(S) GET through libcurl. It honours the
// system's proxy settings (the http_proxy, https_proxy and no_proxy variables), follows the
// redirects the library follows, asks every cache on the way for a fresh copy, and has no
// time-out of its own.
class CurlFetcher : public UrlFetcher {
  public:
    std::string OpenUrlText(const std::string& url, Host& host) override;
};

}  // namespace tallory
