#include "house_picture.h"

#include <map>
#include <set>
#include <sstream>
#include <string_view>
#include <vector>

#include "house/rooms.h"

namespace tessavo {

namespace {

using house::Room;

constexpr int roomWidth = 210;
constexpr int roomHeight = 60;
constexpr int floorHeight = 108;
constexpr int margin = 24;
constexpr int pictureWidth = 1000;
constexpr int floorLabelWidth = 70;
constexpr std::size_t lettersInALine = 34;

struct Spot {
    int centre;
    int top;
};

using Graph = std::map<std::string, std::set<std::string>, std::less<>>;

/// The innermost room around a folder; empty outside the house.
std::string roomOf(std::string_view folder) {
    while (!folder.empty()) {
        for (const Room& room : house::houseRooms()) {
            if (room.folder == folder) {
                return std::string(folder);
            }
        }
        const std::size_t slash = folder.rfind('/');
        folder = slash == std::string_view::npos ? std::string_view{} : folder.substr(0, slash);
    }
    return {};
}

Graph includes(const house::SourceTree& tree) {
    Graph graph;
    for (const auto& [path, file] : tree) {
        const std::string from = roomOf(house::folderOf(path));
        for (const house::Include& include : file.includes) {
            const std::string to = roomOf(house::folderOf(include.target));
            if (include.quoted && !to.empty() && to != from) {
                graph[from].insert(to);
            }
        }
    }
    return graph;
}

bool reaches(const Graph& graph, const std::string& from, const std::string& to) {
    const auto next = graph.find(from);
    if (next == graph.end()) {
        return false;
    }
    for (const std::string& room : next->second) {
        if (room == to || reaches(graph, room, to)) {
            return true;
        }
    }
    return false;
}

bool reachesThroughAnother(const Graph& graph, const std::string& from, const std::string& to) {
    for (const std::string& between : graph.at(from)) {
        if (between != to && reaches(graph, between, to)) {
            return true;
        }
    }
    return false;
}

std::map<std::string, Spot, std::less<>> spots(int floors) {
    std::map<int, std::vector<std::string>> byFloor;
    for (const Room& room : house::houseRooms()) {
        byFloor[room.floor].emplace_back(room.folder);
    }
    std::map<std::string, Spot, std::less<>> places;
    for (const auto& [floor, rooms] : byFloor) {
        const int share = (pictureWidth - floorLabelWidth - 2 * margin) / static_cast<int>(rooms.size());
        for (std::size_t i = 0; i < rooms.size(); ++i) {
            const int centre = margin + floorLabelWidth + share / 2 + share * static_cast<int>(i);
            places[rooms[i]] = {centre, margin + (floors - 1 - floor) * floorHeight};
        }
    }
    return places;
}

/// The words of a line broken into lines that fit into a room.
std::vector<std::string> broken(std::string_view text) {
    std::vector<std::string> lines{""};
    std::istringstream words{std::string(text)};
    for (std::string word; words >> word;) {
        if (!lines.back().empty() && lines.back().size() + 1 + word.size() > lettersInALine) {
            lines.emplace_back();
        }
        lines.back() += (lines.back().empty() ? "" : " ") + word;
    }
    return lines;
}

void drawRoom(std::ostream& out, const Room& room, const Spot& spot) {
    out << "<rect x=\"" << spot.centre - roomWidth / 2 << "\" y=\"" << spot.top << "\" width=\"" << roomWidth
        << "\" height=\"" << roomHeight << "\" rx=\"6\" fill=\""
        << (room.knowsTheToolkit ? "#e4eefb" : "#e6f4ec") << "\" stroke=\"#404c59\"/>\n<text x=\""
        << spot.centre << "\" y=\"" << spot.top + 17 << "\" font-size=\"14\" font-weight=\"600\">"
        << room.folder << "</text>\n";
    int line = spot.top + 33;
    for (const std::string& text : broken(room.holds)) {
        out << "<text x=\"" << spot.centre << "\" y=\"" << line << "\" font-size=\"11\">" << text
            << "</text>\n";
        line += 13;
    }
}

void drawArrow(std::ostream& out, const Spot& from, const Spot& to) {
    const int start = from.top + roomHeight;
    const int bend = (to.top - start) / 2;
    out << "<path d=\"M" << from.centre << ' ' << start << " C" << from.centre << ' ' << start + bend << ' '
        << to.centre << ' ' << to.top - bend << ' ' << to.centre << ' ' << to.top - 2
        << "\" fill=\"none\" stroke=\"#7b8896\" marker-end=\"url(#tip)\"/>\n";
}

}  // namespace

std::string housePicture(const house::SourceTree& tree) {
    int floors = 0;
    for (const Room& room : house::houseRooms()) {
        floors = std::max(floors, room.floor + 1);
    }
    const auto places = spots(floors);
    const Graph graph = includes(tree);
    std::ostringstream out;
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << pictureWidth << "\" height=\""
        << 2 * margin + (floors - 1) * floorHeight + roomHeight
        << "\" font-family=\"Inter, Segoe UI, Noto Sans, DejaVu Sans, sans-serif\" text-anchor=\"middle\">\n"
        << "<defs><marker id=\"tip\" viewBox=\"0 0 8 8\" refX=\"7\" refY=\"4\" markerWidth=\"7\" "
           "markerHeight=\"7\" orient=\"auto\"><path d=\"M0 0L8 4L0 8z\" fill=\"#7b8896\"/></marker></defs>\n"
        << "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
    for (int floor = 0; floor < floors; ++floor) {
        out << "<text x=\"" << margin << "\" y=\""
            << margin + (floors - 1 - floor) * floorHeight + roomHeight / 2 + 4
            << "\" font-size=\"12\" text-anchor=\"start\" fill=\"#55616e\">floor " << floor << "</text>\n";
    }
    for (const auto& [from, targets] : graph) {
        for (const std::string& to : targets) {
            if (!from.empty() && !reachesThroughAnother(graph, from, to)) {
                drawArrow(out, places.at(from), places.at(to));
            }
        }
    }
    for (const Room& room : house::houseRooms()) {
        drawRoom(out, room, places.find(room.folder)->second);
    }
    out << "</svg>\n";
    return out.str();
}

}  // namespace tessavo
