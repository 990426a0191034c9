#include "history/cbor_shape.h"

#include <nlohmann/json.hpp>

namespace tessavo {

namespace {

using Json = nlohmann::json;

constexpr std::size_t deepest = 8;

/// Sees the parts of a value go by; the first false ends it.
class ShapeCheck final : public nlohmann::json_sax<Json> {
 public:
    explicit ShapeCheck(std::size_t size) : size_(size) {}

    bool null() override { return true; }
    bool boolean(bool /*value*/) override { return true; }
    bool number_integer(number_integer_t /*value*/) override { return true; }
    bool number_unsigned(number_unsigned_t /*value*/) override { return true; }
    bool number_float(number_float_t /*value*/, const string_t& /*text*/) override { return true; }
    bool string(string_t& /*value*/) override { return true; }
    bool binary(binary_t& /*value*/) override { return true; }
    bool key(string_t& /*name*/) override { return true; }
    bool start_object(std::size_t count) override { return enter(count); }
    bool start_array(std::size_t count) override { return enter(count); }
    bool end_object() override { return leave(); }
    bool end_array() override { return leave(); }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const nlohmann::detail::exception& /*error*/) override {
        return false;
    }

 private:
    bool enter(std::size_t count) {
        constexpr auto unknown = static_cast<std::size_t>(-1);
        return ++depth_ <= deepest && (count == unknown || count <= size_);
    }
    bool leave() {
        --depth_;
        return true;
    }

    std::size_t size_;
    std::size_t depth_ = 0;
};

}  // namespace

bool hasPlainShape(std::span<const std::uint8_t> bytes) {
    ShapeCheck check(bytes.size());
    return Json::sax_parse(bytes.begin(), bytes.end(), &check, Json::input_format_t::cbor, true);
}

}  // namespace tessavo
