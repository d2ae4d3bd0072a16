#include "web/CurlFetcher.h"

#include <curl/curl.h>

#include <algorithm>
#include <mutex>

namespace tallory {

namespace {

// The size of one read: the screen gets its events between reads of at most this many bytes.
constexpr size_t kChunkBytes = 2048;

struct Transfer {
    std::string body;
    Host* host = nullptr;
};

size_t TakeChunk(char* data, size_t size, size_t count, void* user) {
    auto* transfer = static_cast<Transfer*>(user);
    const size_t total = size * count;
    // The library may hand over more than one read's worth at once; the screen still gets its
    // turn after every chunk.
    for (size_t offset = 0; offset < total; offset += kChunkBytes) {
        transfer->host->YieldEvents();
        transfer->body.append(data + offset, std::min(kChunkBytes, total - offset));
    }
    return total;
}

void InitialiseOnce() {
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

}  // namespace

std::string CurlFetcher::OpenUrlText(const std::string& url, Host& host) {
    InitialiseOnce();
    Transfer transfer;
    transfer.host = &host;
    CURL* session = curl_easy_init();
    if (!session) return {};
    curl_slist* headers = nullptr;
    // Always from the server: no proxy or cache on the way may answer with an old copy.
    headers = curl_slist_append(headers, "Cache-Control: no-cache");
    headers = curl_slist_append(headers, "Pragma: no-cache");
    curl_easy_setopt(session, CURLOPT_URL, url.c_str());
    curl_easy_setopt(session, CURLOPT_USERAGENT, "Tallory OpenUrl");
    curl_easy_setopt(session, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(session, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(session, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(session, CURLOPT_BUFFERSIZE, static_cast<long>(kChunkBytes));
    curl_easy_setopt(session, CURLOPT_WRITEFUNCTION, TakeChunk);
    curl_easy_setopt(session, CURLOPT_WRITEDATA, &transfer);
    const CURLcode result = curl_easy_perform(session);
    curl_slist_free_all(headers);
    curl_easy_cleanup(session);
    // The read that finds the end of the body is a turn for the screen as well.
    host.YieldEvents();
    if (result != CURLE_OK) return {};
    return std::move(transfer.body);
}

}  // namespace tallory
