#include "web/CurlFetcher.h"

#include <curl/curl.h>
#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <mutex>

namespace tallory {

namespace {

// The size of one read: the screen gets its events between reads of at most this many bytes.
constexpr size_t kChunkBytes = 2048;
// While the server is silent the screen still gets its events this often, so that the progress
// window repaints and its Cancel is heard.
constexpr int kQuietTurnMs = 50;

// The few entry points the fetch calls, found in the library loaded at run time. The header gives
// the types and constants only; nothing of it is linked.
struct CurlApi {
    CURLcode (*globalInit)(long flags) = nullptr;
    CURL* (*easyInit)() = nullptr;
    CURLcode (*easySetopt)(CURL* session, CURLoption option, ...) = nullptr;
    void (*easyCleanup)(CURL* session) = nullptr;
    curl_slist* (*slistAppend)(curl_slist* list, const char* text) = nullptr;
    void (*slistFreeAll)(curl_slist* list) = nullptr;
    CURLM* (*multiInit)() = nullptr;
    CURLMcode (*multiAddHandle)(CURLM* multi, CURL* session) = nullptr;
    CURLMcode (*multiRemoveHandle)(CURLM* multi, CURL* session) = nullptr;
    CURLMcode (*multiPerform)(CURLM* multi, int* running) = nullptr;
    CURLMcode (*multiPoll)(CURLM* multi, curl_waitfd* extra, unsigned count, int timeoutMs,
                           int* ready) = nullptr;
    CURLMsg* (*multiInfoRead)(CURLM* multi, int* left) = nullptr;
    CURLMcode (*multiCleanup)(CURLM* multi) = nullptr;
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
    const bool found =
        Find(library, "curl_global_init", api.globalInit, api.error) &&
        Find(library, "curl_easy_init", api.easyInit, api.error) &&
        Find(library, "curl_easy_setopt", api.easySetopt, api.error) &&
        Find(library, "curl_easy_cleanup", api.easyCleanup, api.error) &&
        Find(library, "curl_slist_append", api.slistAppend, api.error) &&
        Find(library, "curl_slist_free_all", api.slistFreeAll, api.error) &&
        Find(library, "curl_multi_init", api.multiInit, api.error) &&
        Find(library, "curl_multi_add_handle", api.multiAddHandle, api.error) &&
        Find(library, "curl_multi_remove_handle", api.multiRemoveHandle, api.error) &&
        Find(library, "curl_multi_perform", api.multiPerform, api.error) &&
        Find(library, "curl_multi_poll", api.multiPoll, api.error) &&
        Find(library, "curl_multi_info_read", api.multiInfoRead, api.error) &&
        Find(library, "curl_multi_cleanup", api.multiCleanup, api.error);
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
    size_t limit = 0;
    std::function<bool()> cancelAsked;
    FetchStop stop = FetchStop::None;
};

size_t TakeChunk(char* data, size_t size, size_t count, void* user) {
    auto* transfer = static_cast<Transfer*>(user);
    const size_t total = size * count;
    // The library may hand over more than one read's worth at once; the screen still gets its
    // turn after every chunk. A short count tells the library to give the transfer up.
    for (size_t offset = 0; offset < total; offset += kChunkBytes) {
        transfer->host->YieldEvents();
        const size_t chunk = std::min(kChunkBytes, total - offset);
        if (transfer->cancelAsked()) {
            transfer->stop = FetchStop::Cancelled;
            return 0;
        }
        if (transfer->body.size() + chunk > transfer->limit) {
            transfer->stop = FetchStop::TooLarge;
            return 0;
        }
        transfer->body.append(data + offset, chunk);
    }
    return total;
}

// Runs the transfer of `session` to its end, or until it is given up: the person cancels, or the
// whole fetch outlasts `total`. The library itself watches the connection time and a reply's
// announced size.
CURLcode RunTransfer(const CurlApi& curl, CURL* session, Transfer& transfer,
                     std::chrono::milliseconds total) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point deadline = Clock::now() + total;
    CURLM* multi = curl.multiInit();
    if (!multi) return CURLE_OUT_OF_MEMORY;
    curl.multiAddHandle(multi, session);
    CURLcode result = CURLE_OK;
    for (int running = 1;;) {
        if (curl.multiPerform(multi, &running) != CURLM_OK) {
            result = CURLE_RECV_ERROR;
            break;
        }
        if (running == 0) {
            int left = 0;
            while (CURLMsg* message = curl.multiInfoRead(multi, &left))
                if (message->msg == CURLMSG_DONE) result = message->data.result;
            break;
        }
        if (transfer.stop != FetchStop::None) break;
        transfer.host->YieldEvents();
        if (transfer.cancelAsked()) {
            transfer.stop = FetchStop::Cancelled;
            break;
        }
        const auto remaining =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        if (remaining.count() <= 0) {
            transfer.stop = FetchStop::TotalTime;
            break;
        }
        const int wait = static_cast<int>(std::min<long long>(remaining.count(), kQuietTurnMs));
        curl.multiPoll(multi, nullptr, 0, wait, nullptr);
    }
    curl.multiRemoveHandle(multi, session);
    curl.multiCleanup(multi);
    return result;
}

}  // namespace

std::string CurlFetcher::OpenUrlText(const std::string& url, Host& host) {
    BeginFetch();
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
    transfer.limit = limits_.bytes;
    transfer.cancelAsked = [this] { return CancelAsked(); };
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
    curl.easySetopt(session, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limits_.connect.count()));
    // A reply that announces its size is refused before its first byte.
    curl.easySetopt(session, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(limits_.bytes));
    using WriteFunction = size_t (*)(char*, size_t, size_t, void*);
    curl.easySetopt(session, CURLOPT_WRITEFUNCTION, static_cast<WriteFunction>(TakeChunk));
    curl.easySetopt(session, CURLOPT_WRITEDATA, &transfer);
    const CURLcode result = RunTransfer(curl, session, transfer, limits_.total);
    curl.slistFreeAll(headers);
    curl.easyCleanup(session);
    // The read that finds the end of the body is a turn for the screen as well.
    host.YieldEvents();
    FetchStop stop = transfer.stop;
    // With no total time of its own, a time-out of the library's is the connection's.
    if (stop == FetchStop::None && result == CURLE_OPERATION_TIMEDOUT)
        stop = FetchStop::ConnectTime;
    if (stop == FetchStop::None && result == CURLE_FILESIZE_EXCEEDED) stop = FetchStop::TooLarge;
    if (stop != FetchStop::None) {
        SetStopped(stop);
        const std::string message = FetchStopMessage(stop, limits_, url);
        if (!message.empty()) host.Message(message, kProgramTitle, Icon::Exclamation);
        return {};
    }
    if (result != CURLE_OK) return {};
    return std::move(transfer.body);
}

}  // namespace tallory
