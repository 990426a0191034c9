#include "copies/written_sets.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "base/number_text.h"
#include "base/raw_file.h"
#include "copies/target_sets.h"
#include "history/kept_names.h"
#include "history/note_lines.h"
#include "history/whole_file.h"
#include "params/image_digest.h"
#include "params/set_text.h"

namespace tessavo {

namespace {

constexpr std::string_view imageSuffix = ".bin";
constexpr std::string_view noteSuffix = ".txt";
constexpr std::string_view firstLine = "Tessavo written set 1\n";
constexpr std::string_view setLabel = "set of the target: ";
constexpr std::string_view timeLabel = "microseconds since 1970: ";
constexpr std::string_view portLabel = "port: ";
constexpr std::string_view digestLabel = "MD5: ";

struct WrittenNote {
    WrittenSet set;
    Md5Digest digest{};
};

std::filesystem::path fileOf(const std::filesystem::path& folder, std::string_view id,
                             std::string_view suffix) {
    return folder / std::string(id).append(suffix);
}

std::string noteText(const WrittenNote& note) {
    std::string text(firstLine);
    const auto add = [&text](std::string_view label, const std::string& value) {
        text.append(label).append(value).append("\n");
    };
    add(setLabel, std::to_string(note.set.targetSet));
    add(timeLabel, note::timeText(note.set.time));
    add(portLabel, note::plainText(note.set.port));
    add(digestLabel, note::digestText(note.digest));
    return note::sealed(std::move(text));
}

std::optional<WrittenNote> readNote(const std::filesystem::path& folder, std::string_view id) {
    const auto file = readWholeFile(fileOf(folder, id, noteSuffix));
    const auto lines =
        file ? note::unsealed({reinterpret_cast<const char*>(file->bytes.data()), file->bytes.size()},
                              firstLine)
             : std::nullopt;
    if (!lines) {
        return std::nullopt;
    }
    std::string_view rest = *lines;
    const auto targetSet = wholeNumber<std::uint8_t>(note::takeLine(rest, setLabel));
    const auto time = note::timeFrom(note::takeLine(rest, timeLabel));
    std::string port = note::textFrom(note::takeLine(rest, portLabel));
    const auto digest = note::digestFrom(note::takeLine(rest, digestLabel));
    if (!targetSet || *targetSet >= targetSetNumbers.size() || !time || !digest) {
        return std::nullopt;
    }
    return WrittenNote{{std::string(id), *targetSet, *time, std::move(port)}, *digest};
}

// Nothing unless it is whole and what its note tells.
std::optional<ParameterImage> readImage(const std::filesystem::path& folder, const WrittenNote& note) {
    const auto file = readFileStart(fileOf(folder, note.set.id, imageSuffix), parameterImageSize + 1);
    if (!file || file->bytes.size() != parameterImageSize || md5(file->bytes) != note.digest) {
        return std::nullopt;
    }
    ParameterImage image;
    std::memcpy(&image, file->bytes.data(), sizeof image);
    return image;
}

// Of everything that has an image, newest first.
std::vector<std::string> idsIn(const std::filesystem::path& folder) {
    std::vector<std::string> ids;
    for (const std::filesystem::path& path : kept::filesIn(folder)) {
        std::string stem = utf8FromPath(path.stem());
        if (kept::numberOf(stem) && utf8FromPath(path.extension()) == imageSuffix) {
            ids.push_back(std::move(stem));
        }
    }
    std::ranges::sort(ids, std::ranges::greater{});
    return ids;
}

}  // namespace

WrittenSets::WrittenSets(std::filesystem::path folder, std::function<WallTime()> now)
    : folder_(std::move(folder)),
      now_(now ? std::move(now) : [] { return std::chrono::system_clock::now(); }) {}

bool WrittenSets::keep(std::uint8_t targetSet, const std::string& port, const ParameterImage& image) {
    if (folder_.empty() || targetSet >= targetSetNumbers.size() || !kept::makeFolder(folder_)) {
        return false;
    }
    const std::vector<std::string> ids = idsIn(folder_);
    const std::uint64_t number =
        kept::numberBehind(ids.empty() ? 0 : kept::numberOf(ids.front()).value_or(0));
    const WrittenNote note{{kept::makeId(number), targetSet, now_(), port}, md5Image(image)};
    const std::string text = noteText(note);
    const std::filesystem::path noteFile = fileOf(folder_, note.set.id, noteSuffix);
    const std::filesystem::path imageFile = fileOf(folder_, note.set.id, imageSuffix);
    // The image comes last: where it is, it is known already which set it went to.
    if (replaceFile(noteFile, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}) ||
        replaceFile(imageFile, {reinterpret_cast<const std::uint8_t*>(&image), sizeof image})) {
        kept::drop(imageFile);
        kept::drop(noteFile);
        return false;
    }
    dropOldest();
    return true;
}

WrittenSetList WrittenSets::list() const {
    WrittenSetList list;
    for (const std::string& id : idsIn(folder_)) {
        const auto note = readNote(folder_, id);
        if (note && readImage(folder_, *note)) {
            list.sets.push_back(note->set);
        } else {
            ++list.damaged;
        }
    }
    return list;
}

std::optional<ParameterImage> WrittenSets::read(std::string_view id) const {
    const auto note = kept::numberOf(id) ? readNote(folder_, id) : std::nullopt;
    return note ? readImage(folder_, *note) : std::nullopt;
}

void WrittenSets::dropOldest() const {
    const std::vector<std::string> ids = idsIn(folder_);
    const std::size_t staying = std::min(ids.size(), mostSets);
    for (std::size_t i = staying; i < ids.size(); ++i) {
        // Without its note an image is of no use; a note without an image is not even looked at.
        kept::drop(fileOf(folder_, ids[i], imageSuffix));
        kept::drop(fileOf(folder_, ids[i], noteSuffix));
    }
    // What has no image is left from an end in the middle, or another program is writing it just now. Behind
    // the oldest that stays it is of no use in either case.
    if (ids.size() < mostSets) {
        return;
    }
    for (const std::filesystem::path& path : kept::filesIn(folder_)) {
        const std::string id = utf8FromPath(path.filename()).substr(0, kept::idLength);
        if (kept::numberOf(id) && id < ids[mostSets - 1]) {
            kept::drop(path);
        }
    }
}

std::filesystem::path writtenSetsFolder(const std::filesystem::path& dataFolder) {
    return dataFolder.empty() ? std::filesystem::path() : dataFolder / "written-sets";
}

}  // namespace tessavo
