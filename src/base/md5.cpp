#include "base/md5.h"

#include <bit>
#include <cstring>
#include <utility>

namespace tessavo {

namespace {

using State = std::array<std::uint32_t, 4>;

constexpr std::size_t blockSize = 64;

// floor(2^32 |sin(i + 1)|), RFC 1321 section 3.4.
constexpr std::array<std::uint32_t, 64> sines{
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

constexpr std::array<std::array<int, 4>, 4> rotations{
    {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}}};

std::uint32_t littleEndianWord(const std::uint8_t* bytes) {
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8U |
           static_cast<std::uint32_t>(bytes[2]) << 16U | static_cast<std::uint32_t>(bytes[3]) << 24U;
}

// One of the 64 steps; a template, so that the compiler sees every index and rotation as a constant.
template <std::size_t Step>
[[gnu::always_inline]] inline void step(State& s, const std::array<std::uint32_t, 16>& words) {
    constexpr std::size_t round = Step / 16;
    constexpr std::array<std::size_t, 4> factor{1, 5, 3, 7};
    constexpr std::array<std::size_t, 4> start{0, 1, 5, 0};
    constexpr std::size_t word = (factor[round] * Step + start[round]) % 16;
    std::uint32_t& a = s[(64 - Step) % 4];
    const std::uint32_t b = s[(65 - Step) % 4];
    const std::uint32_t c = s[(66 - Step) % 4];
    const std::uint32_t d = s[(67 - Step) % 4];
    const std::uint32_t addend = a + words[word] + sines[Step];
    if constexpr (round == 0) {
        a = b + std::rotl(addend + (d ^ (b & (c ^ d))), rotations[round][Step % 4]);
    } else if constexpr (round == 1) {
        // The two halves never share a bit, so they can be added one after the other: shorter than joining
        // them.
        a = b + std::rotl(addend + (c & ~d) + (b & d), rotations[round][Step % 4]);
    } else if constexpr (round == 2) {
        a = b + std::rotl(addend + (b ^ c ^ d), rotations[round][Step % 4]);
    } else {
        a = b + std::rotl(addend + (c ^ (b | ~d)), rotations[round][Step % 4]);
    }
}

template <std::size_t... Steps>
[[gnu::always_inline]] inline void allSteps(State& s, const std::array<std::uint32_t, 16>& words,
                                            std::index_sequence<Steps...>) {
    (step<Steps>(s, words), ...);
}

void digestBlock(State& state, const std::uint8_t* block) {
    std::array<std::uint32_t, 16> words{};
    for (std::size_t i = 0; i < words.size(); ++i) {
        words[i] = littleEndianWord(block + 4 * i);
    }
    State s = state;
    allSteps(s, words, std::make_index_sequence<64>{});
    for (std::size_t i = 0; i < state.size(); ++i) {
        state[i] += s[i];
    }
}

}  // namespace

Md5Digest md5(std::span<const std::uint8_t> message) {
    State state{0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    const std::size_t wholeBlocks = message.size() / blockSize;
    for (std::size_t i = 0; i < wholeBlocks; ++i) {
        digestBlock(state, message.data() + i * blockSize);
    }
    // The rest, 0x80, zeros and the length in bits fill one block or two.
    std::array<std::uint8_t, 2 * blockSize> tail{};
    const auto rest = message.subspan(wholeBlocks * blockSize);
    if (!rest.empty()) {
        std::memcpy(tail.data(), rest.data(), rest.size());
    }
    tail[rest.size()] = 0x80;
    const std::size_t tailSize = rest.size() + 9 <= blockSize ? blockSize : 2 * blockSize;
    const std::uint64_t bits = static_cast<std::uint64_t>(message.size()) * 8U;
    for (std::size_t i = 0; i < 8; ++i) {
        tail[tailSize - 8 + i] = static_cast<std::uint8_t>(bits >> (8 * i) & 0xFFU);
    }
    for (std::size_t done = 0; done < tailSize; done += blockSize) {
        digestBlock(state, tail.data() + done);
    }
    Md5Digest digest{};
    for (std::size_t i = 0; i < digest.size(); ++i) {
        digest[i] = static_cast<std::uint8_t>(state[i / 4] >> (8 * (i % 4)) & 0xFFU);
    }
    return digest;
}

}  // namespace tessavo
