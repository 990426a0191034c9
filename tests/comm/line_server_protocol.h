#pragma once

#include <cstdint>

namespace tessavo::test::line_server {

/// How the tests of Windows ask for the other end of a line; one connection is one line.
///
/// The server begins with an answer that tells the number of the line's COM port. Then each Request, after
/// which come its bytes, if it has any, is answered: the answer's size (32 bit, little-endian) and its bytes.
enum class Wish : std::uint32_t {
    send = 1,      ///< `count` bytes follow; the answer is "1", or "0" when the device did not take them
    receive = 2,   ///< up to `count` bytes within `limitMs`; the answer is what came
    settings = 3,  ///< the answer is all settings of the device
    hangUp = 4,    ///< the answer is empty
};

struct Request {
    Wish wish;
    std::uint32_t count;
    std::uint32_t limitMs;
};

/// Names the TCP port of the server on this machine.
inline constexpr char variable[] = "TESSAVO_TEST_LINES";

}  // namespace tessavo::test::line_server
