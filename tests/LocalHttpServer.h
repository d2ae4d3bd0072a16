#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace tallory::test {

inline void SendAll(int connection, const std::string& text) {
    for (size_t sent = 0; sent < text.size();) {
        const ssize_t wrote =
            send(connection, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
        if (wrote <= 0) return;
        sent += static_cast<size_t>(wrote);
    }
}

// Binds the socket to a loopback port the system picks, and returns the address with that port.
inline sockaddr_in BindToFreePort(int socket) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address);
    socklen_t length = sizeof address;
    getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length);
    return address;
}

// Holds the connection open, silent, until the client gives up or the server stops: a raw handler
// of a server that takes the request and never answers.
inline void Silence(int connection, const std::atomic<bool>& stopping) {
    char buffer[256];
    while (!stopping) {
        pollfd readable{connection, POLLIN, 0};
        if (poll(&readable, 1, 10) > 0 && recv(connection, buffer, sizeof buffer, 0) <= 0) return;
    }
}

// A small HTTP server on 127.0.0.1 (a free port) for the tests of the registration fetches. It
// answers each GET from a handler, one connection at a time, and stops with the object. Requests
// never leave the machine: the test sets no_proxy for the loopback address.
class LocalHttpServer {
  public:
    using Reply = std::pair<int, std::string>;  // the status and the body
    using Handler = std::function<Reply(const std::string& target)>;
    // A server that answers a connection itself, after its request head was read (a stalled or an
    // endless reply): it writes to `connection` and returns once `stopping` turns true.
    using RawHandler = std::function<void(int connection, const std::atomic<bool>& stopping)>;

    explicit LocalHttpServer(Handler handler) : handler_(std::move(handler)) { Start(); }
    explicit LocalHttpServer(RawHandler raw) : raw_(std::move(raw)) { Start(); }
    ~LocalHttpServer() {
        stop_ = true;
        thread_.join();
        close(listener_);
    }

    std::string Base() const { return BaseOf(port_); }

    // The request targets ("/path?query") and heads received so far.
    std::vector<std::string> Targets() const { return Copy(targets_); }
    std::vector<std::string> Heads() const { return Copy(heads_); }

    // The base of a loopback port that nobody listens on: taken from the system and given back at
    // once.
    static std::string UnusedBase() {
        const int probe = socket(AF_INET, SOCK_STREAM, 0);
        const sockaddr_in address = BindToFreePort(probe);
        close(probe);
        return BaseOf(ntohs(address.sin_port));
    }

  private:
    std::vector<std::string> Copy(const std::vector<std::string>& requests) const {
        std::lock_guard<std::mutex> lock(mutex_);
        return requests;
    }

    static std::string BaseOf(int port) { return "http://127.0.0.1:" + std::to_string(port) + "/"; }

    void Start() {
        setenv("no_proxy", "127.0.0.1,localhost", 1);
        setenv("NO_PROXY", "127.0.0.1,localhost", 1);
        listener_ = socket(AF_INET, SOCK_STREAM, 0);
        int yes = 1;
        setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        port_ = ntohs(BindToFreePort(listener_).sin_port);
        listen(listener_, 8);
        thread_ = std::thread([this] { Serve(); });
    }

    void Serve() {
        while (!stop_) {
            pollfd waiting{listener_, POLLIN, 0};
            if (poll(&waiting, 1, 50) <= 0) continue;
            const int connection = accept(listener_, nullptr, nullptr);
            if (connection < 0) continue;
            Answer(connection);
            close(connection);
        }
    }

    void Answer(int connection) {
        std::string head;
        char buffer[1024];
        while (head.find("\r\n\r\n") == std::string::npos) {
            pollfd readable{connection, POLLIN, 0};
            if (poll(&readable, 1, 2000) <= 0) return;
            const ssize_t got = recv(connection, buffer, sizeof buffer, 0);
            if (got <= 0) return;
            head.append(buffer, static_cast<size_t>(got));
        }
        const size_t start = head.find(' ') + 1;
        const std::string target = head.substr(start, head.find(' ', start) - start);
        {
            std::lock_guard<std::mutex> lock(mutex_);
            targets_.push_back(target);
            heads_.push_back(head);
        }
        if (raw_) return raw_(connection, stop_);
        const auto [status, body] = handler_(target);
        SendAll(connection,
                "HTTP/1.1 " + std::to_string(status) + (status == 200 ? " OK" : " Not Found") +
                    "\r\nContent-Type: text/plain\r\nContent-Length: " +
                    std::to_string(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
    }

    Handler handler_;
    RawHandler raw_;
    int listener_ = -1;
    int port_ = 0;
    std::atomic<bool> stop_{false};
    std::thread thread_;
    mutable std::mutex mutex_;
    std::vector<std::string> targets_;
    std::vector<std::string> heads_;
};

}  // namespace tallory::test
