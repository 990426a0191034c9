#include <cstdlib>
#include <mutex>
#include <stdexcept>
#include <winsock2.h>

#include "comm/line_server_protocol.h"
#include "comm/port_list.h"
#include "comm/serial.h"
#include "comm/serial_line.h"

namespace tessavo::test {

using line_server::Request;
using line_server::Wish;

namespace {

void startSockets() {
    static const int result = [] {
        WSADATA about{};
        return WSAStartup(MAKEWORD(2, 2), &about);
    }();
    if (result != 0) {
        throw std::runtime_error("no sockets to be had");
    }
}

}  // namespace

struct SerialLine::Native {
    Native() {
        startSockets();
        const char* const port = std::getenv(line_server::variable);
        if (port == nullptr) {
            throw std::runtime_error(std::string("no serial lines: ") + line_server::variable +
                                     " names no line server");
        }
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<u_short>(std::atoi(port)));
        connection = socket(AF_INET, SOCK_STREAM, 0);
        if (connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            closesocket(connection);
            throw std::runtime_error("the line server does not answer");
        }
        name = "COM" + answer();
    }
    ~Native() { closesocket(connection); }
    Native(const Native&) = delete;
    Native& operator=(const Native&) = delete;

    std::string ask(const Request& request, std::string_view bytes = {}) {
        const std::lock_guard guard(mutex);
        std::string whole(reinterpret_cast<const char*>(&request), sizeof request);
        whole += bytes;
        std::size_t sent = 0;
        while (sent < whole.size()) {
            const int count =
                ::send(connection, whole.data() + sent, static_cast<int>(whole.size() - sent), 0);
            if (count <= 0) {
                throw std::runtime_error("the line server is gone");
            }
            sent += static_cast<std::size_t>(count);
        }
        return answer();
    }

    SOCKET connection = INVALID_SOCKET;
    std::string name;

 private:
    void take(char* data, std::size_t size) const {
        while (size > 0) {
            const int count = recv(connection, data, static_cast<int>(size), 0);
            if (count <= 0) {
                throw std::runtime_error("the line server is gone");
            }
            data += count;
            size -= static_cast<std::size_t>(count);
        }
    }
    [[nodiscard]] std::string answer() const {
        std::uint32_t size = 0;
        take(reinterpret_cast<char*>(&size), sizeof size);
        std::string bytes(size, '\0');
        take(bytes.data(), size);
        return bytes;
    }

    std::mutex mutex;
};

SerialLine::SerialLine() : native_(std::make_unique<Native>()) {}
SerialLine::~SerialLine() = default;

std::wstring SerialLine::path() const {
    return devicePath(native_->name);
}

std::string SerialLine::settings() const {
    return native_->ask({Wish::settings, 0, 0});
}

bool SerialLine::send(std::string_view bytes) const {
    return native_->ask({Wish::send, static_cast<std::uint32_t>(bytes.size()), 0}, bytes) == "1";
}

std::string SerialLine::receive(std::size_t count, Milliseconds limit) const {
    return native_->ask(
        {Wish::receive, static_cast<std::uint32_t>(count), static_cast<std::uint32_t>(limit.count())});
}

void SerialLine::hangUp() {
    native_->ask({Wish::hangUp, 0, 0});
}

// Drivers differ, and so does Wine.
bool tellsOfAVanishedDevice(std::uint32_t result) {
    return result == serial_result::ioDevice || result == ERROR_BROKEN_PIPE || result == ERROR_NOT_READY ||
           result == ERROR_BAD_COMMAND || result == ERROR_DEVICE_NOT_CONNECTED || result == ERROR_GEN_FAILURE;
}

}  // namespace tessavo::test
