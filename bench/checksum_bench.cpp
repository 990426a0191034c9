// The one-call digest is libcrypto's fastest way, though it prefers others by now.
#define OPENSSL_SUPPRESS_DEPRECATED

#include <array>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <openssl/md5.h>
#include <span>

#include "base/md5.h"
#include "comm/framing.h"
#include "params/parameter_image.h"

namespace tessavo::bench {
namespace {

template <std::size_t size>
std::array<std::uint8_t, size> noise() {
    std::array<std::uint8_t, size> bytes{};
    std::uint32_t state = 1;
    for (std::uint8_t& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<std::uint8_t>(state >> 24U);
    }
    return bytes;
}

void digestOurs(benchmark::State& state) {
    auto bytes = noise<parameterImageSize>();
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(bytes);
        benchmark::DoNotOptimize(md5(bytes));
    }
}
BENCHMARK(digestOurs)->Name("MD5");

void digestLibcrypto(benchmark::State& state) {
    auto bytes = noise<parameterImageSize>();
    std::array<std::uint8_t, MD5_DIGEST_LENGTH> digest{};
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(bytes);
        MD5(bytes.data(), bytes.size(), digest.data());
        benchmark::DoNotOptimize(digest);
    }
}
BENCHMARK(digestLibcrypto)->Name("MD5 of libcrypto");

std::uint16_t bitwiseCrc(std::span<const std::uint8_t> bytes) {
    std::uint32_t crc = 0xFFFF;
    for (const std::uint8_t byte : bytes) {
        crc ^= static_cast<std::uint32_t>(byte) << 8U;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 0x8000U) != 0 ? (crc << 1U) ^ 0x1021U : crc << 1U;
        }
    }
    return static_cast<std::uint16_t>(crc);
}

template <typename Sum>
void checksum(benchmark::State& state, Sum sum) {
    auto bytes = noise<maximumPayloadSize>();
    if (sum(bytes) != bitwiseCrc(bytes)) {
        state.SkipWithError("the two forms do not agree");
    }
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(bytes);
        benchmark::DoNotOptimize(sum(bytes));
    }
}
void checksumByTable(benchmark::State& state) {
    checksum(state, [](std::span<const std::uint8_t> bytes) { return Crc16(bytes); });
}
BENCHMARK(checksumByTable)->Name("CRC");
void checksumBitwise(benchmark::State& state) {
    checksum(state, bitwiseCrc);
}
BENCHMARK(checksumBitwise)->Name("CRC bit by bit");

}  // namespace
}  // namespace tessavo::bench
