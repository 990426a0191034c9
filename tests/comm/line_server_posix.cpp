// Other end of the serial lines of tests that run under Wine: for each connection a pseudo-terminal, which
// becomes a COM port. Prints its TCP port and goes on until its input ends.
//
//   test_line_server FOLDER      Wine's folder of devices (dosdevices)
#include <arpa/inet.h>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <optional>
#include <sys/socket.h>
#include <thread>

#include "comm/line_server_protocol.h"
#include "support/pty_pair.h"

namespace tessavo::test::line_server {
namespace {

// Wine knows no ports beyond; the low ones may be real.
constexpr int firstPort = 20;
constexpr int lastPort = 255;
constexpr std::uint32_t longestRequest = 1U << 24U;

/// A number that no living line has.
int nextPort() {
    static std::atomic<int> made = 0;
    return firstPort + made.fetch_add(1) % (lastPort - firstPort + 1);
}

/// A line as a COM port, for as long as it lives.
class ComPort {
 public:
    explicit ComPort(const std::filesystem::path& folder)
        : number_(nextPort()), link_(folder / ("com" + std::to_string(number_))) {
        // Wine leaves the line as it is when it opens the port, and a serial port edits and echoes nothing.
        termios raw = line.settings();
        ::cfmakeraw(&raw);
        line.setSettings(raw);
        std::error_code error;
        std::filesystem::remove(link_, error);
        std::filesystem::create_symlink(line.file(), link_);
    }
    ~ComPort() {
        std::error_code error;
        std::filesystem::remove(link_, error);
    }
    ComPort(const ComPort&) = delete;
    ComPort& operator=(const ComPort&) = delete;

    [[nodiscard]] std::string name() const { return std::to_string(number_); }

    PtyPair line;

 private:
    int number_;
    std::filesystem::path link_;
};

bool take(int connection, void* data, std::size_t size) {
    return size == 0 || ::recv(connection, data, size, MSG_WAITALL) == static_cast<ssize_t>(size);
}

bool answer(int connection, std::string_view bytes) {
    const auto size = static_cast<std::uint32_t>(bytes.size());
    std::string whole(sizeof size, '\0');
    std::memcpy(whole.data(), &size, sizeof size);
    whole += bytes;
    return ::send(connection, whole.data(), whole.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(whole.size());
}

std::optional<std::string> granted(int connection, const Request& request, ComPort& port) {
    switch (request.wish) {
        case Wish::send: {
            std::string bytes(std::min(request.count, longestRequest), '\0');
            if (!take(connection, bytes.data(), bytes.size())) {
                return std::nullopt;
            }
            return port.line.send(bytes) ? "1" : "0";
        }
        case Wish::receive:
            return port.line.receive(request.count, std::chrono::milliseconds(request.limitMs));
        case Wish::settings:
            return settingsText(port.line);
        case Wish::hangUp:
            port.line.hangUp();
            return std::string();
    }
    return std::nullopt;
}

void serve(int connection, const std::filesystem::path& folder) {
    try {
        ComPort port(folder);
        Request request{};
        bool open = answer(connection, port.name());
        while (open && take(connection, &request, sizeof request)) {
            const std::optional<std::string> bytes = granted(connection, request, port);
            open = bytes && answer(connection, *bytes);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "test_line_server: %s\n", error.what());
    }
    ::close(connection);
}

int run(const std::filesystem::path& folder) {
    const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listener, generic, size) != 0 || ::listen(listener, SOMAXCONN) != 0 ||
        ::getsockname(listener, generic, &size) != 0) {
        std::perror("test_line_server");
        return 1;
    }
    std::printf("%d\n", int{ntohs(address.sin_port)});
    std::fflush(stdout);
    std::thread([listener, folder] {
        for (;;) {
            const int connection = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
            if (connection >= 0) {
                const int atOnce = 1;
                ::setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &atOnce, sizeof atOnce);
                std::thread(serve, connection, folder).detach();
            }
        }
    }).detach();
    while (std::getchar() != EOF) {
    }
    std::_Exit(0);
}

}  // namespace
}  // namespace tessavo::test::line_server

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("usage: test_line_server FOLDER\n", stderr);
        return 2;
    }
    return tessavo::test::line_server::run(arguments[1]);
}
