#include "reader/views/page/PageTemplate.h"

#include <algorithm>
#include <cstdint>
#include <ostream>

#include "reader/views/page/HtmlText.h"
#include "reader/views/page/PageAssets.h"

namespace sentiq {
namespace {

enum class Kind : std::uint8_t { Literal, Text, Asset, Each, None };

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
    if (open == source.size()) {
      at = open;
      break;
    }
    const char sign = source[open + 2];
    const bool named = sign == '#' || sign == '^' || sign == '/' || sign == '>' || sign == '{';
    const std::size_t begin = open + (named ? 3 : 2);
    const std::size_t close = source.find("}}", begin);
    const std::string_view name = source.substr(begin, close - begin);
    at = close + (sign == '{' ? 3 : 2);
    // A line that holds such a sign alone leaves nothing behind.
    const bool beginsLine = open == 0 || source[open - 1] == '\n';
    if (named && sign != '{' && beginsLine && source.substr(at).starts_with('\n')) {
      ++at;
    }
    if (sign == '/') {
      break;
    }
    if (sign == '>') {
      std::size_t begins = 0;
      std::vector<Node> part = parse(pageAsset(name), begins);
      nodes.insert(nodes.end(), part.begin(), part.end());
    } else if (sign == '#' || sign == '^') {
      nodes.push_back({sign == '#' ? Kind::Each : Kind::None, name, parse(source, at)});
    } else {
      nodes.push_back({sign == '{' ? Kind::Asset : Kind::Text, name});
    }
  }
  return nodes;
}

template <class Entries>
auto* found(const Entries& entries, std::string_view name) {
  const auto entry = std::find_if(entries.begin(), entries.end(), [name](const auto& e) { return e.first == name; });
  return entry == entries.end() ? nullptr : &entry->second;
}

}  // namespace

void Places::text(std::string_view name, std::string text) {
  texts_.emplace_back(name, std::move(text));
}

void Places::list(std::string_view name, std::size_t count, Item item) {
  lists_.emplace_back(name, List{count, std::move(item)});
}

class PageWriter {
 public:
  explicit PageWriter(std::ostream& out) : out_(out) {}

  void write(const std::vector<Node>& nodes, const Places& places) {
    around_.push_back(&places);
    write(nodes);
    around_.pop_back();
  }

 private:
  struct Value {
    const std::string* text = nullptr;
    const Places::List* list = nullptr;
  };

  Value valueOf(std::string_view name) const {
    for (std::size_t i = around_.size(); i-- > 0;) {
      const Value value{found(around_[i]->texts_, name), found(around_[i]->lists_, name)};
      if (value.text != nullptr || value.list != nullptr) {
        return value;
      }
    }
    return {};
  }

  void write(const std::vector<Node>& nodes) {
    for (const Node& node : nodes) {
      if (node.kind == Kind::Literal) {
        out_ << node.text;
      } else if (node.kind == Kind::Asset) {
        out_ << pageAsset(node.text);
      } else {
        writeValue(node, valueOf(node.text));
      }
    }
  }

  void writeValue(const Node& node, const Value& value) {
    const std::size_t count = value.list != nullptr                           ? value.list->count
                              : value.text != nullptr && !value.text->empty() ? 1
                                                                              : 0;
    if (node.kind == Kind::Text) {
      out_ << (value.text != nullptr ? htmlText(*value.text) : "");
    } else if (node.kind == Kind::None) {
      if (count == 0) {
        write(node.inside);
      }
    } else if (value.list == nullptr && count > 0) {
      write(node.inside);
    } else {
      for (std::size_t i = 0; i < count; ++i) {
        write(node.inside, value.list->item(i));
      }
    }
  }

  std::ostream& out_;
  std::vector<const Places*> around_;
};

void writePage(std::string_view name, const Places& places, std::ostream& out) {
  std::size_t begins = 0;
  PageWriter(out).write(parse(pageAsset(name), begins), places);
}

}  // namespace sentiq
