#include "filtertext/yaml_tree.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <yaml.h>

#include "base/utf8.h"
#include "filtertext/yaml_values.h"
#include "text/shown_text.h"

namespace tessavo {

namespace {

// The library compares each directive with all before it.
constexpr std::size_t mostDirectives = 8;

/// Where the characters of a text stand. The library counts lines by more characters than people see as ends of lines.
class Places {
 public:
    explicit Places(std::string_view text) : text_(text) {
        std::size_t character = 0;
        for (std::size_t byte = 0; byte < text.size(); ++byte) {
            character += continuesCharacter(text[byte]) ? 0U : 1U;
            const bool ends = text[byte] == '\n' || (text[byte] == '\r' && !endFollows(byte + 1));
            if (ends && byte + 1 < text.size()) {
                starts_.push_back(character);
            }
        }
        end_ = character - lastEnd(text);
    }

    /// \param character from 0; the end of the text is that of its last line
    [[nodiscard]] YamlPlace of(std::size_t character) const {
        character = std::min(character, end_);
        const auto after = std::ranges::upper_bound(starts_, character);
        return {static_cast<std::size_t>(after - starts_.begin()), character - *(after - 1) + 1};
    }

    [[nodiscard]] YamlPlace of(const yaml_mark_t& mark) const { return of(mark.index); }

    [[nodiscard]] YamlPlace ofByte(std::size_t byte) const {
        return of(characterCount(text_.substr(0, byte)));
    }

    /// Places of lines, from 0, that begin with a character.
    [[nodiscard]] std::vector<YamlPlace> linesWith(char first) const {
        std::vector<YamlPlace> found;
        bool begins = true;
        std::size_t character = 0;
        for (const char byte : text_) {
            if (begins && byte == first) {
                found.push_back(of(character));
            }
            character += continuesCharacter(byte) ? 0U : 1U;
            begins = byte == '\n' || byte == '\r';
        }
        return found;
    }

 private:
    /// Whether the end of a line, LF or CR LF, stands there.
    [[nodiscard]] bool endFollows(std::size_t byte) const {
        const std::string_view rest = text_.substr(byte);
        return rest.starts_with('\n') || rest.starts_with("\r\n");
    }

    /// Length of the end of the last line.
    [[nodiscard]] static std::size_t lastEnd(std::string_view text) {
        for (const std::string_view end : {"\r\r\n", "\r\n", "\n", "\r"}) {
            if (text.ends_with(end)) {
                return end.size();
            }
        }
        return 0;
    }

    std::string_view text_;
    std::vector<std::size_t> starts_{0};
    std::size_t end_ = 0;
};

/// The library's parser over a text.
class Parser {
 public:
    explicit Parser(std::string_view text) : works_(yaml_parser_initialize(&parser_) == 1) {
        if (works_) {
            // The library reads through the pointer only.
            yaml_parser_set_input_string(&parser_, reinterpret_cast<const unsigned char*>(text.data()),
                                         text.size());
            yaml_parser_set_encoding(&parser_, YAML_UTF8_ENCODING);
        }
    }
    ~Parser() {
        if (works_) {
            yaml_parser_delete(&parser_);
        }
    }
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    [[nodiscard]] bool next(yaml_event_t& event) {
        return works_ && yaml_parser_parse(&parser_, &event) == 1;
    }

    /// Why next() failed.
    [[nodiscard]] YamlTrouble trouble(const Places& places) const {
        if (!works_ || parser_.error == YAML_MEMORY_ERROR || parser_.problem == nullptr) {
            return {"There is not enough memory for the file."};
        }
        std::string text = "This is no valid YAML: ";
        text.append(parser_.problem);
        if (parser_.context != nullptr && *parser_.context != '\0') {
            text.append(" ").append(parser_.context);
        }
        text.append(".");
        return {std::move(text), parser_.error == YAML_READER_ERROR ? places.ofByte(parser_.problem_offset)
                                                                    : places.of(parser_.problem_mark)};
    }

 private:
    yaml_parser_t parser_{};
    bool works_;
};

std::string_view viewOf(const yaml_char_t* text) {
    return text == nullptr ? std::string_view() : std::string_view(reinterpret_cast<const char*>(text));
}

/// Whether a tag says of a node what it is anyway.
bool fits(std::string_view tag, YamlKind kind) {
    constexpr std::string_view prefix = "tag:yaml.org,2002:";
    constexpr std::array<std::string_view, 5> scalars{"str", "int", "float", "bool", "null"};
    if (tag.empty() || tag == "!") {
        return true;
    }
    if (!tag.starts_with(prefix)) {
        return false;
    }
    tag.remove_prefix(prefix.size());
    switch (kind) {
        case YamlKind::sequence:
            return tag == "seq";
        case YamlKind::mapping:
            return tag == "map";
        case YamlKind::scalar:
            break;
    }
    return std::ranges::find(scalars, tag) != scalars.end();
}

/// Makes the tree from what the parser tells.
class Builder {
 public:
    explicit Builder(const Places& places) : places_(places) {}

    /// \return false where there is trouble
    [[nodiscard]] bool take(const yaml_event_t& event) {
        switch (event.type) {
            case YAML_DOCUMENT_START_EVENT:
                return ++documents_ == 1 || refuse("There is more than one document in the file.", event);
            case YAML_ALIAS_EVENT:
                return takeAlias(event);
            case YAML_SCALAR_EVENT:
                return takeScalar(event);
            case YAML_SEQUENCE_START_EVENT:
                return open(YamlKind::sequence, event, viewOf(event.data.sequence_start.tag),
                            viewOf(event.data.sequence_start.anchor));
            case YAML_MAPPING_START_EVENT:
                return open(YamlKind::mapping, event, viewOf(event.data.mapping_start.tag),
                            viewOf(event.data.mapping_start.anchor));
            case YAML_SEQUENCE_END_EVENT:
            case YAML_MAPPING_END_EVENT:
                close();
                return true;
            default:
                return true;
        }
    }

    YamlTree tree{};
    YamlTrouble trouble{};

 private:
    /// A sequence or mapping whose end has not come yet.
    struct Open {
        std::size_t node;
        std::size_t size = 1;
        std::set<std::string_view> keys{};
    };

    bool refuse(std::string text, const yaml_event_t& event) {
        trouble = {std::move(text), places_.of(event.start_mark)};
        return false;
    }

    bool takeAlias(const yaml_event_t& event) {
        const std::string_view name = viewOf(event.data.alias.anchor);
        const auto found = anchors_.find(name);
        if (found == anchors_.end()) {
            return refuse(std::string("The alias ").append(inQuotes(name)).append(" names nothing above it."),
                          event);
        }
        if (std::ranges::find(open_, found->second, &Open::node) != open_.end()) {
            return refuse(
                std::string("The alias ").append(inQuotes(name)).append(" stands inside of what it names."),
                event);
        }
        return attach(found->second, event);
    }

    bool takeScalar(const yaml_event_t& event) {
        const auto& scalar = event.data.scalar;
        const auto node = make(YamlKind::scalar, event, viewOf(scalar.tag), viewOf(scalar.anchor));
        if (!node) {
            return false;
        }
        tree.nodes[*node].text.assign(reinterpret_cast<const char*>(scalar.value), scalar.length);
        tree.nodes[*node].isPlain = scalar.style == YAML_PLAIN_SCALAR_STYLE;
        return attach(*node, event);
    }

    bool open(YamlKind kind, const yaml_event_t& event, std::string_view tag, std::string_view anchor) {
        if (open_.size() == deepestYamlNode) {
            return refuse("The file is nested too deeply.", event);
        }
        const auto node = make(kind, event, tag, anchor);
        if (!node || !attach(*node, event)) {
            return false;
        }
        open_.push_back({*node});
        return true;
    }

    void close() {
        const Open closed = std::move(open_.back());
        open_.pop_back();
        sizes_[closed.node] = closed.size;
        if (!open_.empty()) {
            open_.back().size += closed.size - 1;
        }
    }

    std::optional<std::size_t> make(YamlKind kind, const yaml_event_t& event, std::string_view tag,
                                    std::string_view anchor) {
        if (!fits(tag, kind)) {
            refuse(std::string("The tag ").append(inQuotes(tag)).append(" has no meaning here."), event);
            return std::nullopt;
        }
        const std::size_t node = tree.nodes.size();
        tree.nodes.push_back({kind, places_.of(event.start_mark)});
        sizes_.push_back(1);
        if (!anchor.empty()) {
            anchors_.insert_or_assign(std::string(anchor), node);
        }
        return node;
    }

    /// Puts a node where the parser stands.
    bool attach(std::size_t node, const yaml_event_t& event) {
        size_ += sizes_[node];
        if (size_ > mostYamlNodes) {
            return refuse("The file has too many values.", event);
        }
        if (open_.empty()) {
            tree.root = node;
            return true;
        }
        YamlNode& parent = tree.nodes[open_.back().node];
        const bool isKey = parent.kind == YamlKind::mapping && parent.items.size() % 2 == 0;
        if (isKey && !isAllowedKey(tree.nodes[node], event)) {
            return false;
        }
        parent.items.push_back(node);
        open_.back().size += sizes_[node];
        return true;
    }

    bool isAllowedKey(const YamlNode& key, const yaml_event_t& event) {
        if (key.kind != YamlKind::scalar) {
            return refuse("A key must be a text, no list and no map.", event);
        }
        if (key.text.size() > longestYamlKey) {
            return refuse("A key is too long.", event);
        }
        if (key.isPlain && key.text == "<<") {
            return refuse("A merge key (<<) is not supported; the values must be written out.", event);
        }
        if (!open_.back().keys.insert(key.text).second) {
            return refuse(std::string("The key ").append(inQuotes(key.text)).append(" stands twice."), event);
        }
        return true;
    }

    const Places& places_;
    std::vector<Open> open_{};
    std::map<std::string, std::size_t, std::less<>> anchors_{};
    std::vector<std::size_t> sizes_{};  // of each node with all that stands in it, aliases written out
    std::size_t size_ = 0;
    std::size_t documents_ = 0;
};

}  // namespace

std::variant<YamlTree, YamlTrouble> readYamlTree(std::string_view text) {
    const Places places(text);
    if (const auto directives = places.linesWith('%'); directives.size() > mostDirectives) {
        return YamlTrouble{"The file has too many directives.", directives[mostDirectives]};
    }
    Parser parser(text);
    Builder builder(places);
    bool ended = false;
    while (!ended) {
        yaml_event_t event{};
        if (!parser.next(event)) {
            return parser.trouble(places);
        }
        ended = event.type == YAML_STREAM_END_EVENT;
        const bool taken = builder.take(event);
        yaml_event_delete(&event);
        if (!taken) {
            return std::move(builder.trouble);
        }
    }
    return std::move(builder.tree);
}

}  // namespace tessavo
