#pragma once

#include <cstring>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "cli/cli_fixture.h"
#include "dsp/band_types.h"
#include "dsp/filter_kind.h"
#include "params/channels.h"
#include "params/records.h"

namespace tessavo::test {

/// Commands that read or write filter texts, with a settings file to work on.
class FilterTextTest : public CommandTest {
 protected:
    using Json = nlohmann::json;

    std::string writeText(const std::string& name, std::string_view text) const {
        write(path(name), Bytes(text.begin(), text.end()));
        return path(name);
    }

    [[nodiscard]] static std::string textOf(const std::string& file) {
        const Bytes bytes = read(file);
        return {bytes.begin(), bytes.end()};
    }

    [[nodiscard]] static ParameterStore storeOf(const std::string& file) {
        const Bytes bytes = read(file);
        ParameterStore store;
        EXPECT_EQ(bytes.size(), sizeof store) << file;
        std::memcpy(&store, bytes.data(), std::min(bytes.size(), sizeof store));
        return store;
    }

    static void save(const std::string& file, const ParameterStore& store) {
        Bytes bytes(sizeof store);
        std::memcpy(bytes.data(), &store, sizeof store);
        write(file, bytes);
    }

    /// A channel of a file. Sets and channels are counted from 1, channels as the pages do.
    [[nodiscard]] static OutputChannelParams& channelIn(ParameterStore& store, int set, int channel) {
        const PagePosition position{static_cast<std::uint8_t>(channel - 1)};
        return store.sets.at(static_cast<std::size_t>(set - 1)).channels.at(recordChannelAt(position).value);
    }

    [[nodiscard]] static OutputChannelParams channelOf(const std::string& file, int set, int channel) {
        ParameterStore store = storeOf(file);
        return channelIn(store, set, channel);
    }

    /// A settings file in which no byte of a set's channels is what a fresh file has there: every value on its step and
    /// in its range, spare bytes too.
    [[nodiscard]] std::string random(const std::string& name, std::mt19937& random) const {
        std::string file = fresh(name);
        ParameterStore store = storeOf(file);
        const auto below = [&](unsigned count) { return static_cast<unsigned>(random() % count); };
        for (ParameterSet& set : store.sets) {
            for (OutputChannelParams& channel : set.channels) {
                for (EqBandParams& band : channel.bands) {
                    band.type = static_cast<std::uint8_t>(below(3));
                    band.frequencyHz = static_cast<std::uint16_t>(20 + below(19981));
                    band.gainDb = static_cast<float>((static_cast<double>(below(361)) - 180.0) / 10.0);
                    band.q = static_cast<float>((1.0 + below(200)) / 10.0);
                    band.off = static_cast<std::uint8_t>(below(2));
                    band.spare1 = static_cast<std::uint8_t>(1 + below(255));
                    band.spare13.fill(static_cast<std::uint8_t>(1 + below(255)));
                }
                std::uint8_t kind = 0;
                for (CrossoverParams& crossover : channel.crossovers) {
                    crossover.enabled = static_cast<std::uint8_t>(below(2));
                    crossover.kind = kind++;
                    crossover.frequencyHz = static_cast<std::uint16_t>(20 + below(19981));
                    crossover.order = static_cast<std::uint8_t>(below(2) == 0 ? 2 : 4);
                    crossover.spare5 = static_cast<std::uint8_t>(1 + below(255));
                }
                channel.volumeDb = static_cast<float>((static_cast<double>(below(100)) - 30.0) / 10.0);
            }
        }
        save(file, store);
        return file;
    }
};

/// What a band is but for its spare bytes.
inline void expectBand(const EqBandParams& band, BandType type, int hz, float gainDb, float q,
                       bool off = false) {
    EXPECT_EQ(band.type, static_cast<std::uint8_t>(type));
    EXPECT_EQ(band.frequencyHz, hz);
    EXPECT_EQ(band.gainDb, gainDb);
    EXPECT_EQ(band.q, q);
    EXPECT_EQ(band.off, off ? 1 : 0);
}

}  // namespace tessavo::test
