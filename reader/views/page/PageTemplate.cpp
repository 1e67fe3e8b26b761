#include "reader/views/page/PageTemplate.h"

#include <algorithm>
#include <cstdint>
#include <ostream>

#include "reader/input/CleanText.h"
#include "reader/views/page/PageAssets.h"

namespace sentiq {
namespace {

enum class Kind : std::uint8_t { Literal, Text, Each, None };

struct Node {
  Kind kind;
  std::string_view text;  // Of a literal; else the name.
  std::vector<Node> inside{};
};

/// @param at where to begin; receives where the section ends that begins there.
std::vector<Node> parse(std::string_view source, std::size_t& at) {
  std::vector<Node> nodes;
  while (at < source.size()) {
    const std::size_t open = std::min(source.find("{{", at), source.size());
    nodes.push_back({Kind::Literal, source.substr(at, open - at)});
    at = open;
    if (open == source.size()) {
      break;
    }
    const char sign = source[open + 2];
    const bool isSection = sign == '#' || sign == '^' || sign == '/' || sign == '>';
    const std::size_t begin = open + (isSection || sign == '{' ? 3 : 2);
    const std::size_t close = source.find("}}", begin);
    const std::string_view name = source.substr(begin, close - begin);
    at = close + (sign == '{' ? 3 : 2);
    // A line that holds such a sign alone leaves nothing behind.
    const bool beginsLine = open == 0 || source[open - 1] == '\n';
    if (isSection && beginsLine && source.substr(at).starts_with('\n')) {
      ++at;
    }
    if (sign == '/') {
      break;
    }
    if (sign == '>') {
      std::size_t begins = 0;
      std::vector<Node> part = parse(pageAsset(name), begins);
      nodes.insert(nodes.end(), part.begin(), part.end());
    } else if (isSection) {
      nodes.push_back({sign == '#' ? Kind::Each : Kind::None, name, parse(source, at)});
    } else if (sign == '{') {
      nodes.push_back({Kind::Literal, pageAsset(name)});
    } else {
      nodes.push_back({Kind::Text, name});
    }
  }
  return nodes;
}

template <class Entry>
const Entry* named(const std::vector<Entry>& entries, std::string_view name) {
  const auto entry = std::find_if(entries.begin(), entries.end(), [name](const Entry& e) { return e.name == name; });
  return entry == entries.end() ? nullptr : &*entry;
}

}  // namespace

class PageWriter {
 public:
  PageWriter(std::ostream& out, const Escape& escape) : out_(out), escape_(escape) {}

  void write(const std::vector<Node>& nodes, const Places& places) {
    around_.push_back(&places);
    write(nodes);
    around_.pop_back();
  }

 private:
  void write(const std::vector<Node>& nodes) {
    for (const Node& node : nodes) {
      if (node.kind == Kind::Literal) {
        out_ << node.text;
      } else {
        writeNamed(node);
      }
    }
  }

  void writeNamed(const Node& node) {
    const PlacedText* text = nullptr;
    const Places::List* list = nullptr;
    for (std::size_t i = around_.size(); i-- > 0 && text == nullptr && list == nullptr;) {
      text = named(around_[i]->texts_, node.text);
      list = named(around_[i]->lists_, node.text);
    }
    const bool isEmpty = list != nullptr ? list->count == 0 : text == nullptr || text->text.empty();
    if (node.kind == Kind::Text) {
      out_ << (text != nullptr ? escape_(text->text) : "");
    } else if (node.kind == Kind::Each && list != nullptr) {
      writeItems(node.inside, *list);
    } else if (isEmpty == (node.kind == Kind::None)) {
      write(node.inside);
    }
  }

  void writeItems(const std::vector<Node>& nodes, const Places::List& list) {
    for (std::size_t i = 0; i < list.count; ++i) {
      if (list.item) {
        write(nodes, list.item(i));
      } else {
        write(nodes, list.made[i]);
      }
    }
  }

  std::ostream& out_;
  const Escape& escape_;
  std::vector<const Places*> around_;
};

std::string htmlText(std::string_view bytes) {
  std::string html;
  for (const char c : cleanText(bytes)) {
    const std::string_view escape = c == '&'    ? "&amp;"
                                    : c == '<'  ? "&lt;"
                                    : c == '>'  ? "&gt;"
                                    : c == '"'  ? "&quot;"
                                    : c == '\'' ? "&#39;"
                                                : std::string_view();
    if (escape.empty()) {
      html += c;
    } else {
      html += escape;
    }
  }
  return html;
}

void writePage(std::string_view name, const Places& places, std::ostream& out, const Escape& escape) {
  std::size_t begins = 0;
  PageWriter(out, escape).write(parse(pageAsset(name), begins), places);
}

std::string countOrNothing(std::uint64_t count) {
  return count == 0 ? "" : std::to_string(count);
}

}  // namespace sentiq
