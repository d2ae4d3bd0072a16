#include "web/Internet.h"

#include <cstdio>

#include "common/LineReader.h"
#include "web/WebRegistration.h"

namespace tallory {

namespace {

std::string SecondsText(std::chrono::milliseconds time) {
    const long long ms = time.count();
    if (ms == 1000) return "1 second";
    char text[32];
    if (ms % 1000 == 0)
        std::snprintf(text, sizeof text, "%lld seconds", ms / 1000);
    else
        std::snprintf(text, sizeof text, "%.1f seconds", static_cast<double>(ms) / 1000);
    return text;
}

std::string SizeText(size_t bytes) {
    constexpr size_t kKilo = 1024;
    constexpr size_t kMega = kKilo * kKilo;
    if (bytes >= kMega && bytes % kMega == 0) return std::to_string(bytes / kMega) + " MB";
    if (bytes >= kKilo && bytes % kKilo == 0) return std::to_string(bytes / kKilo) + " KB";
    return std::to_string(bytes) + " bytes";
}

}  // namespace

std::string FetchStopMessage(FetchStop why, const FetchLimits& limits, const std::string& url) {
    std::string server = UrlHostName(url);
    if (server.empty()) server = url;
    switch (why) {
        case FetchStop::ConnectTime:
            return "The server " + server + " did not take the connection within " +
                   SecondsText(limits.connect) +
                   ", so nothing was fetched and nothing was changed. Check the internet "
                   "connection and the address, then try again.";
        case FetchStop::TotalTime:
            return "The reply from " + server + " took longer than " + SecondsText(limits.total) +
                   " and was given up; nothing was changed. Try again later.";
        case FetchStop::TooLarge:
            return "The reply from " + server + " is larger than " + SizeText(limits.bytes) +
                   ", more than any registration list, and was given up; nothing was changed. "
                   "Check the address.";
        case FetchStop::None:
        case FetchStop::Cancelled:
            break;
    }
    return {};
}

std::string ReadLocalText(const std::string& path) {
    std::string text;
    LineReader reader(path);
    if (!reader.IsOpen()) return text;
    for (std::string line; reader.ReadLine(line);) {
        text += line;
        text += "\r\n";
    }
    return text;
}

}  // namespace tallory
