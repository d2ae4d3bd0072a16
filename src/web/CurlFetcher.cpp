#include "web/CurlFetcher.h"

#include <curl/curl.h>
#include <dlfcn.h>

#include <algorithm>
#include <map>
#include <mutex>

namespace tallory {

namespace {

// The size of one read: the screen gets its events between reads of at most this many bytes.
constexpr size_t kChunkBytes = 2048;

// The few entry points the fetch calls, found in the library loaded at run time. The header gives
// the types and constants only; nothing of it is linked.
struct CurlApi {
    CURLcode (*globalInit)(long flags) = nullptr;
    CURL* (*easyInit)() = nullptr;
    CURLcode (*easySetopt)(CURL* session, CURLoption option, ...) = nullptr;
    CURLcode (*easyPerform)(CURL* session) = nullptr;
    void (*easyCleanup)(CURL* session) = nullptr;
    curl_slist* (*slistAppend)(curl_slist* list, const char* text) = nullptr;
    void (*slistFreeAll)(curl_slist* list) = nullptr;
    std::string error;  // why the library could not be used; empty when it can
};

template <typename Function>
bool Find(void* library, const char* name, Function& function, std::string& error) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    if (!function && error.empty()) error = std::string("it has no ") + name;
    return function != nullptr;
}

CurlApi LoadApi(const std::string& libraryName) {
    CurlApi api;
    // Never closed: the library keeps global state from its initialisation on.
    void* library = dlopen(libraryName.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        const char* reason = dlerror();
        api.error = reason ? reason : "it was not found";
        return api;
    }
    const bool found = Find(library, "curl_global_init", api.globalInit, api.error) &&
                       Find(library, "curl_easy_init", api.easyInit, api.error) &&
                       Find(library, "curl_easy_setopt", api.easySetopt, api.error) &&
                       Find(library, "curl_easy_perform", api.easyPerform, api.error) &&
                       Find(library, "curl_easy_cleanup", api.easyCleanup, api.error) &&
                       Find(library, "curl_slist_append", api.slistAppend, api.error) &&
                       Find(library, "curl_slist_free_all", api.slistFreeAll, api.error);
    if (!found) return api;
    // The library's global set-up is not safe to run twice or from two threads at once; the
    // caller holds the lock and each library is loaded once.
    if (api.globalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK) api.error = "it could not be initialised";
    return api;
}

// The library of that name, loaded and initialised at its first use and kept for the process.
const CurlApi& Api(const std::string& libraryName) {
    static std::mutex lock;
    static std::map<std::string, CurlApi> loaded;
    const std::lock_guard<std::mutex> guard(lock);
    auto found = loaded.find(libraryName);
    if (found == loaded.end()) found = loaded.emplace(libraryName, LoadApi(libraryName)).first;
    return found->second;
}

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

}  // namespace

std::string CurlFetcher::OpenUrlText(const std::string& url, Host& host) {
    const CurlApi& curl = Api(library_);
    if (!curl.error.empty()) {
        if (!toldMissing_) {
            toldMissing_ = true;
            host.Message("The network library " + library_ + " could not be loaded (" + curl.error +
                             "): nothing can be fetched from the web.",
                         kProgramTitle, Icon::Exclamation);
        }
        host.YieldEvents();
        return {};
    }
    Transfer transfer;
    transfer.host = &host;
    CURL* session = curl.easyInit();
    if (!session) return {};
    curl_slist* headers = nullptr;
    // Always from the server: no proxy or cache on the way may answer with an old copy.
    headers = curl.slistAppend(headers, "Cache-Control: no-cache");
    headers = curl.slistAppend(headers, "Pragma: no-cache");
    curl.easySetopt(session, CURLOPT_URL, url.c_str());
    curl.easySetopt(session, CURLOPT_USERAGENT, "Tallory OpenUrl");
    curl.easySetopt(session, CURLOPT_HTTPHEADER, headers);
    curl.easySetopt(session, CURLOPT_FOLLOWLOCATION, 1L);
    curl.easySetopt(session, CURLOPT_NOSIGNAL, 1L);
    curl.easySetopt(session, CURLOPT_BUFFERSIZE, static_cast<long>(kChunkBytes));
    using WriteFunction = size_t (*)(char*, size_t, size_t, void*);
    curl.easySetopt(session, CURLOPT_WRITEFUNCTION, static_cast<WriteFunction>(TakeChunk));
    curl.easySetopt(session, CURLOPT_WRITEDATA, &transfer);
    const CURLcode result = curl.easyPerform(session);
    curl.slistFreeAll(headers);
    curl.easyCleanup(session);
    // The read that finds the end of the body is a turn for the screen as well.
    host.YieldEvents();
    if (result != CURLE_OK) return {};
    return std::move(transfer.body);
}

}  // namespace tallory
