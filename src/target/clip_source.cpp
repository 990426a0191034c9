#include "target/clip_source.h"

namespace tessavo {

std::optional<ClipBytes> parseClipPattern(std::string_view line) {
    ClipBytes state{};
    std::size_t count = 0;
    for (const char character : line) {
        if (character == ' ' || character == '\t' || character == '\r') {
            continue;
        }
        if ((character != '0' && character != '1') || count == state.size()) {
            return std::nullopt;
        }
        state[count] = character == '1' ? 1 : 0;
        ++count;
    }
    if (count != state.size()) {
        return std::nullopt;
    }
    return state;
}

void ClipSource::hold(const ClipBytes& state) {
    random_.reset();
    queue_.clear();
    current_ = state;
}

void ClipSource::enqueue(const ClipBytes& state) {
    random_.reset();
    queue_.push_back(state);
}

void ClipSource::randomise(std::uint32_t seed) {
    queue_.clear();
    random_.emplace(seed);
}

ClipBytes ClipSource::next() {
    if (random_) {
        // Music rarely clips everywhere: about a quarter of the stages light up.
        for (std::uint8_t& byte : current_) {
            byte = (*random_)() % 4 == 0 ? 1 : 0;
        }
    } else if (!queue_.empty()) {
        current_ = queue_.front();
        queue_.pop_front();
    }
    return current_;
}

}  // namespace tessavo
