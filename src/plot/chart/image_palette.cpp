#include "plot/chart/image_palette.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/saturate.h"

namespace tessavo {
namespace {

/// A colour in the Oklab colour space, in which equal distances look equally large.
struct Lab {
    double lightness = 0, a = 0, b = 0;
};

double toLinear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double fromLinear(double channel) {
    return channel <= 0.0031308 ? channel * 12.92 : 1.055 * std::pow(channel, 1 / 2.4) - 0.055;
}

Lab labOf(QRgb color) {
    const double r = toLinear(qRed(color) / 255.0);
    const double g = toLinear(qGreen(color) / 255.0);
    const double b = toLinear(qBlue(color) / 255.0);
    const double l = std::cbrt(0.4122214708 * r + 0.5363325363 * g + 0.0514459929 * b);
    const double m = std::cbrt(0.2119034982 * r + 0.6806995451 * g + 0.1073969566 * b);
    const double s = std::cbrt(0.0883024619 * r + 0.2817188376 * g + 0.6299787005 * b);
    return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
            1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
            0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

std::array<std::uint8_t, 3> rgbOf(const Lab& lab) {
    const double l = std::pow(lab.lightness + 0.3963377774 * lab.a + 0.2158037573 * lab.b, 3);
    const double m = std::pow(lab.lightness - 0.1055613458 * lab.a - 0.0638541728 * lab.b, 3);
    const double s = std::pow(lab.lightness - 0.0894841775 * lab.a - 1.2914855480 * lab.b, 3);
    const std::array<double, 3> linear{4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s,
                                       -1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s,
                                       -0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s};
    std::array<std::uint8_t, 3> rgb{};
    for (std::size_t n = 0; n < rgb.size(); ++n) {
        rgb[n] = truncateTo<std::uint8_t>(std::round(255 * fromLinear(std::clamp(linear[n], 0.0, 1.0))));
    }
    return rgb;
}

Lab mixed(const Lab& from, const Lab& to, double share) {
    return {std::lerp(from.lightness, to.lightness, share), std::lerp(from.a, to.a, share),
            std::lerp(from.b, to.b, share)};
}

enum class Spacing {
    even,       ///< the anchors stand at equal distances
    lightness,  ///< lightness rises or falls evenly from end to end
    cyclic,     ///< even, and back to the first anchor
    banded,     ///< even, in sixteen flat bands
};

struct Table {
    const char* name;
    Spacing spacing;
    std::vector<QRgb> anchors;
};

const std::array<Table, CImagePalette::lastIdentifier - CImagePalette::firstIdentifier + 1>& tables() {
    using enum Spacing;
    static const std::array<Table, 33> all{{
        {"Grey", lightness, {0x000000, 0xFFFFFF}},
        {"Grey, inverted", lightness, {0xFFFFFF, 0x000000}},
        {"Grey, warm", lightness, {0x0C0806, 0x7E766E, 0xFFFAF2}},
        {"Grey, cool", lightness, {0x06090D, 0x6E7782, 0xF2F8FF}},
        {"Grey, 16 bands", banded, {0x000000, 0xFFFFFF}},
        {"Red", lightness, {0x000000, 0xC81E2B, 0xFFFFFF}},
        {"Orange", lightness, {0x000000, 0xD96A0B, 0xFFFFFF}},
        {"Yellow", lightness, {0x000000, 0xC9A800, 0xFFFFFF}},
        {"Green", lightness, {0x000000, 0x1F9A45, 0xFFFFFF}},
        {"Teal", lightness, {0x000000, 0x129488, 0xFFFFFF}},
        {"Blue", lightness, {0x000000, 0x1C62D0, 0xFFFFFF}},
        {"Violet", lightness, {0x000000, 0x7048D6, 0xFFFFFF}},
        {"Magenta", lightness, {0x000000, 0xC22F9B, 0xFFFFFF}},
        {"Ember", lightness, {0x0B0405, 0x6B1420, 0xC8401A, 0xF39A1E, 0xFFF6C8}},
        {"Dusk", lightness, {0x0D0B2A, 0x4A2080, 0xA83A8C, 0xEE7768, 0xFFE59A}},
        {"Lagoon", lightness, {0x1A0F4C, 0x204F8C, 0x1C8F8E, 0x66C46A, 0xF4F0A0}},
        {"Forest", lightness, {0x08130C, 0x1F4A2A, 0x4E8A36, 0xA6C25A, 0xF6F7D0}},
        {"Glacier", lightness, {0x050A1C, 0x16406E, 0x2F86B4, 0x86C9DC, 0xF6FDFF}},
        {"Copper", lightness, {0x080504, 0x5A3220, 0xB36A42, 0xE8B48C, 0xFFF4E8}},
        {"Orchid", lightness, {0x0A0612, 0x402A72, 0x8A4FB4, 0xD08CCB, 0xFFE9F6}},
        {"Graphite", lightness, {0x0D1115, 0x29323C, 0x1C6AB8, 0x6DB8FF, 0xE9F4FF}},
        {"Blue - red", even, {0x123A8C, 0x6FA0E0, 0xF2F2F2, 0xE58A78, 0x8C1420}},
        {"Teal - orange", even, {0x0A5A55, 0x5FBDB0, 0xF2F2F2, 0xEBA766, 0x8A4305}},
        {"Violet - green", even, {0x4A1F7A, 0xA98AD0, 0xF2F2F2, 0x86C08A, 0x14602C}},
        {"Magenta - lime", even, {0x8A1268, 0xDE8CC4, 0xF2F2F2, 0xAFCB66, 0x466A08}},
        {"Blue - red, dark middle", even, {0x9CC8FF, 0x2F6FC8, 0x14181C, 0xC84238, 0xFFB4A4}},
        {"Cyan - amber, dark middle", even, {0xA8F2F0, 0x1F9C9C, 0x14181C, 0xB88412, 0xFFE28C}},
        {"Colour wheel", cyclic, {0xE0524A, 0xC7A21A, 0x4DB04A, 0x1FB3A8, 0x3E86E0, 0xA862D8}},
        {"Colour wheel, dark", cyclic, {0x7A1F1C, 0x66500A, 0x1E5A20, 0x0A5A56, 0x1C4180, 0x562E78}},
        {"Colour wheel, pale", cyclic, {0xF6B8B2, 0xEAD8A0, 0xB8E0B4, 0xA8E2DC, 0xB4CEF6, 0xDCC0F0}},
        {"Day and night", cyclic, {0x10162E, 0x3F6FB4, 0xF4F1E4, 0xC46A48}},
        {"Tide", cyclic, {0x06363C, 0x1F94A0, 0xE8F6EE, 0x7A9C3A}},
        {"Black and white, there and back", cyclic, {0x000000, 0xFFFFFF}},
    }};
    return all;
}

/// Colour at a share of the way along evenly spaced anchors.
Lab along(const std::vector<Lab>& anchors, double share) {
    const double position = share * static_cast<double>(anchors.size() - 1);
    const auto from = std::min(truncateTo<std::size_t>(position), anchors.size() - 2);
    return mixed(anchors[from], anchors[from + 1], position - static_cast<double>(from));
}

/// Colour with a given lightness on a way whose lightness only rises or only falls.
Lab withLightness(const std::vector<Lab>& anchors, double share) {
    const double wanted = std::lerp(anchors.front().lightness, anchors.back().lightness, share);
    for (std::size_t n = 0; n + 1 < anchors.size(); ++n) {
        const double low = anchors[n].lightness;
        const double high = anchors[n + 1].lightness;
        if ((wanted - low) * (wanted - high) <= 0) {
            return mixed(anchors[n], anchors[n + 1], (wanted - low) / (high - low));
        }
    }
    return anchors.back();
}

Lab colorAt(const Table& table, const std::vector<Lab>& anchors, std::size_t index) {
    const double share = static_cast<double>(index) / (CImagePalette::colorCount - 1);
    switch (table.spacing) {
        case Spacing::even:
            return along(anchors, share);
        case Spacing::lightness:
            return withLightness(anchors, share);
        case Spacing::cyclic:
            // A cyclic table goes on with its first colour after the last.
            return along(anchors, static_cast<double>(index) / CImagePalette::colorCount);
        case Spacing::banded:
            return along(anchors, std::floor(static_cast<double>(index) / 16.0) / 15.0);
    }
    return {};
}

}  // namespace

CImagePalette::CImagePalette() : CImagePalette(firstIdentifier) {}

CImagePalette::CImagePalette(int identifier) : identifier_(identifier) {
    const Table& table = tables()[static_cast<std::size_t>(identifier - firstIdentifier)];
    std::vector<Lab> anchors;
    std::ranges::transform(table.anchors, std::back_inserter(anchors), labOf);
    if (table.spacing == Spacing::cyclic) {
        anchors.push_back(anchors.front());
    }
    for (std::size_t index = 0; index < colorCount; ++index) {
        std::ranges::copy(rgbOf(colorAt(table, anchors, index)),
                          bytes_.begin() + static_cast<std::ptrdiff_t>(3 * index));
    }
}

std::optional<CImagePalette> CImagePalette::load(int identifier) {
    if (identifier < firstIdentifier || identifier > lastIdentifier) {
        return std::nullopt;
    }
    return CImagePalette(identifier);
}

QString CImagePalette::nameOf(int identifier) {
    if (identifier < firstIdentifier || identifier > lastIdentifier) {
        return {};
    }
    return QString::fromLatin1(tables()[static_cast<std::size_t>(identifier - firstIdentifier)].name);
}

QRgb CImagePalette::color(int index) const {
    const auto offset = static_cast<std::size_t>(std::clamp(index, 0, 255)) * 3;
    return qRgb(bytes_[offset], bytes_[offset + 1], bytes_[offset + 2]);
}

QRgb CImagePalette::colorOf(double value, double minimum, double maximum) const {
    if (!std::isfinite(value)) {
        return 0;
    }
    // Halves, so that the difference of two huge values stays finite.
    const double span = maximum / 2 - minimum / 2;
    return color(span > 0 ? truncateTo<int>(std::floor((value / 2 - minimum / 2) / span * 255 + 0.5)) : 128);
}

}  // namespace tessavo
