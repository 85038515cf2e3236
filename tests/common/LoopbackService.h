#pragma once

#include <httplib.h>

#include <arpa/inet.h>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace orvel::test {

inline std::string readFile(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A recorded answer of the prayer-times service.
inline std::string readFixture(const std::string &name)
{
    return readFile(std::filesystem::path(ORVEL_FIXTURES_DIR) / name);
}

#ifdef ORVEL_GEOCODING_DIR
// An answer of a geocoding service, written from its documentation.
inline std::string readGeocoding(const std::string &name)
{
    return readFile(std::filesystem::path(ORVEL_GEOCODING_DIR) / name);
}
#endif

// A real HTTP server on the loopback interface. Every GET is recorded and answered by the
// current responder, which a test may swap at any time.
class LoopbackService {
public:
    using Responder = std::function<void(const httplib::Request &, httplib::Response &)>;

    void start()
    {
        server_.Get(".*", [this](const httplib::Request &request, httplib::Response &response) {
            std::unique_lock lock(mutex_);
            requests_.push_back(request);
            const Responder responder = responder_;
            lock.unlock();
            responder(request, response);
        });
        port_ = server_.bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_.listen_after_bind(); });
        // stop() is only heard once the accept loop runs.
        for (int i = 0; i < 5000 && !server_.is_running(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

    void stop()
    {
        if (thread_.joinable()) {
            server_.stop();
            thread_.join();
        }
    }

    ~LoopbackService() { stop(); }

    void respond(Responder responder)
    {
        const std::lock_guard lock(mutex_);
        responder_ = std::move(responder);
    }

    std::string url(const std::string &path = "/v1") const { return "http://127.0.0.1:" + std::to_string(port_) + path; }

    std::vector<httplib::Request> requests() const
    {
        const std::lock_guard lock(mutex_);
        return requests_;
    }

    std::vector<std::string> paths() const
    {
        std::vector<std::string> paths;
        for (const httplib::Request &request : requests())
            paths.push_back(request.path);
        return paths;
    }

private:
    httplib::Server server_;
    int port_ = 0;
    std::thread thread_;
    mutable std::mutex mutex_;
    Responder responder_ = [](const httplib::Request &, httplib::Response &response) { response.status = 404; };
    std::vector<httplib::Request> requests_;
};

// A loopback port held until it is destroyed, so no other server can take it meanwhile.
// Connections to it are either accepted by the kernel and then never answered, or refused.
class IdlePort {
public:
    enum class Connections { unanswered, refused };

    explicit IdlePort(Connections connections)
        : socket_(::socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        ::bind(socket_, reinterpret_cast<sockaddr *>(&address), sizeof address);
        if (connections == Connections::unanswered)
            ::listen(socket_, 8);
        ::getsockname(socket_, reinterpret_cast<sockaddr *>(&address), &length);
        port_ = ntohs(address.sin_port);
    }
    ~IdlePort() { ::close(socket_); }
    IdlePort(const IdlePort &) = delete;
    IdlePort &operator=(const IdlePort &) = delete;

    std::string url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/v1"; }

private:
    int socket_;
    int port_ = 0;
};

} // namespace orvel::test
