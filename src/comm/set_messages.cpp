#include "comm/set_messages.h"

#include <algorithm>
#include <cstring>

#include "comm/target_commands.h"
#include "params/image_digest.h"

namespace tessavo {

std::array<std::uint8_t, liveMessageSize> liveMessage(const ParameterImage& image) {
    const Md5Digest digest = md5Image(image);
    std::array<std::uint8_t, liveMessageSize> message;
    std::memcpy(message.data(), &image, sizeof image);
    std::copy(digest.begin(), digest.end(), message.begin() + sizeof image);
    return message;
}

std::array<std::uint8_t, saveMessageSize> saveMessage(std::uint8_t targetSet, const ParameterImage& image) {
    const Md5Digest digest = md5Image(image);
    std::array<std::uint8_t, saveMessageSize> message{command_code::saveSet, targetSet};
    std::copy(digest.begin(), digest.end(), message.begin() + 2);
    return message;
}

bool isConfirmation(std::span<const std::uint8_t> reply) {
    return reply.size() >= reply_layout::confirmationBytes &&
           std::ranges::all_of(reply.first(reply_layout::confirmationBytes),
                               [](std::uint8_t byte) { return byte == reply_layout::confirmation; });
}

}  // namespace tessavo
