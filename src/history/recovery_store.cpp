#include "history/recovery_store.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <string_view>
#include <utility>

#include "base/raw_file.h"
#include "params/set_text.h"

namespace tessavo {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono;

constexpr std::string_view currentName = "recovery.tsr";
constexpr std::string_view endedPrefix = "ended-";
constexpr std::string_view damagedPrefix = "damaged-";
constexpr std::string_view suffix = ".tsr";
// What a killed run may have left beside its file.
constexpr std::string_view partPrefix = "recovery.tsr.part-";

// Those with names that begin and end so, in the order of their names, and so of their times.
std::vector<fs::path> filesNamed(const fs::path& folder, std::string_view start,
                                 std::string_view end = suffix) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), last; !error && entry != last; entry.increment(error)) {
        const std::string name = utf8FromPath(entry->path().filename());
        if (name.starts_with(start) && name.ends_with(end)) {
            files.push_back(entry->path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string padded(std::int64_t number, std::size_t digits) {
    const std::string text = std::to_string(number);
    return std::string(digits - std::min(digits, text.size()), '0') + text;
}

// "20261122-102107-123", in UTC.
std::string timeName(WallTime time) {
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(floor<milliseconds>(time - day));
    return padded(static_cast<int>(date.year()), 4) + padded(static_cast<unsigned>(date.month()), 2) +
           padded(static_cast<unsigned>(date.day()), 2) + "-" + padded(clock.hours().count(), 2) +
           padded(clock.minutes().count(), 2) + padded(clock.seconds().count(), 2) + "-" +
           padded(clock.subseconds().count(), 3);
}

bool isThere(const fs::path& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

// Renames a file, never over another one.
// \return its new path; nothing when it stays where it is
std::optional<fs::path> setAside(const fs::path& file, std::string_view prefix, WallTime time) {
    const std::string stem = std::string(prefix) + timeName(time);
    fs::path aside = file.parent_path() / (stem + std::string(suffix));
    for (int number = 2; isThere(aside); ++number) {
        aside = file.parent_path() / (stem + "-" + std::to_string(number) + std::string(suffix));
    }
    std::error_code error;
    fs::rename(file, aside, error);
    return error ? std::nullopt : std::optional(aside);
}

void removeAllBut(std::size_t kept, std::vector<fs::path> oldestFirst) {
    oldestFirst.resize(oldestFirst.size() - std::min(kept, oldestFirst.size()));
    std::ranges::for_each(oldestFirst, [](const fs::path& file) { static_cast<void>(removeFile(file)); });
}

void addTo(RecoveryList& list, RecoveryTrouble trouble, const fs::path& file) {
    switch (trouble) {
        case RecoveryTrouble::damaged:
            list.damaged.push_back(file);
            break;
        case RecoveryTrouble::newer:
            list.newer.push_back(file);
            break;
        case RecoveryTrouble::unreadable:
            // A run that begins meanwhile may have moved it.
            if (isThere(file)) {
                list.unreadable.push_back(file);
            }
            break;
    }
}

/// Reads a file into a list.
/// \return whether it is whole and has nothing to restore
bool lookAt(RecoveryList& list, const fs::path& file) {
    auto read = readRecovery(file);
    if (const auto* trouble = std::get_if<RecoveryTrouble>(&read)) {
        addTo(list, *trouble, file);
        return false;
    }
    auto& state = std::get<RecoveryState>(read);
    if (!state.isSaved) {
        list.waiting.push_back({file, state.time, std::move(state.documentPath), state.process});
    }
    return state.isSaved;
}

void sortByTime(RecoveryList& list) {
    std::stable_sort(
        list.waiting.begin(), list.waiting.end(),
        [](const WaitingRecovery& one, const WaitingRecovery& other) { return one.time > other.time; });
}

// Gives the file of the run before the name of one that waits. A later look finds out what it holds.
// \return whether its own name is free
bool endRunBefore(const fs::path& file, WallTime now) {
    if (!isThere(file)) {
        return true;
    }
    const auto read = readRecovery(file);
    const auto* state = std::get_if<RecoveryState>(&read);
    if (state != nullptr && state->isSaved) {
        static_cast<void>(removeFile(file));
        return true;
    }
    return setAside(file, endedPrefix, state != nullptr ? state->time : now).has_value();
}

}  // namespace

RecoveryStore::RecoveryStore(fs::path folder) : folder_(std::move(folder)) {}

fs::path RecoveryStore::currentFile() const {
    return folder_ / currentName;
}

RecoveryList RecoveryStore::look() const {
    RecoveryList list;
    if (isThere(currentFile())) {
        lookAt(list, currentFile());
    }
    for (const fs::path& file : filesNamed(folder_, endedPrefix)) {
        lookAt(list, file);
    }
    for (const fs::path& file : filesNamed(folder_, damagedPrefix)) {
        list.damaged.push_back(file);
    }
    sortByTime(list);
    return list;
}

RecoveryStart RecoveryStore::beginRun(WallTime now) const {
    RecoveryStart start;
    start.isFree = endRunBefore(currentFile(), now);
    std::vector<fs::path> files = filesNamed(folder_, endedPrefix);
    if (!start.isFree) {
        files.push_back(currentFile());
    }
    for (const fs::path& file : files) {
        if (lookAt(start.list, file)) {
            static_cast<void>(removeFile(file));
        }
    }
    for (fs::path& file : start.list.damaged) {
        file = setAside(file, damagedPrefix, now).value_or(file);
    }
    removeAllBut(keptFiles, filesNamed(folder_, damagedPrefix));
    // Only now are they all such that wait: what is damaged takes the place of none.
    removeAllBut(keptFiles, filesNamed(folder_, endedPrefix));
    std::erase_if(start.list.waiting, [](const WaitingRecovery& one) { return !isThere(one.file); });
    for (const fs::path& file : filesNamed(folder_, partPrefix, {})) {
        static_cast<void>(removeFile(file));
    }
    sortByTime(start.list);
    return start;
}

std::optional<RecoveryState> RecoveryStore::take(const WaitingRecovery& one) {
    auto read = readRecovery(one.file);
    auto* state = std::get_if<RecoveryState>(&read);
    return state != nullptr ? std::optional(std::move(*state)) : std::nullopt;
}

std::error_code RecoveryStore::discard(const WaitingRecovery& one) {
    return removeFile(one.file);
}

}  // namespace tessavo
