#pragma once

#include <string>

#include "common/Host.h"

namespace tallory {

// Where a text comes from over the network. The program has one real fetcher (libcurl); a test can
// hand the registration code any other.
class UrlFetcher {
  public:
    virtual ~UrlFetcher() = default;

    // The whole body of the reply to a GET of `url`, as 8-bit text; empty when the fetch fails in
    // any way. The host's events run once per chunk of at most 2048 bytes. An error page of a
    // server is a body like any other: callers recognise one by its text.
    virtual std::string OpenUrlText(const std::string& url, Host& host) = 0;
};

// A local file read as a reply would be: every line followed by CR LF; what was read so far when
// the file cannot be read (empty when it cannot be opened).
std::string ReadLocalText(const std::string& path);

}  // namespace tallory
