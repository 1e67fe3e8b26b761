// Pages with named places, and what stands in these: as much of the Mustache language as they need.
//   {{name}}              the text of that name, escaped
//   {{{name}}}            an asset, as it is
//   {{#name}}…{{/name}}   once for each item of the list of that name, or when the text is not empty
//   {{^name}}…{{/name}}   when there is no such item or text
//   {{>name}}             another template
// Names are looked up from the innermost item outwards.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sentiq {

/// A text with its name, which has to outlive it: it is a literal.
struct PlacedText {
  PlacedText(std::string_view place, std::string words) : name(place), text(std::move(words)) {}
  PlacedText(std::string_view place, std::string_view words) : name(place), text(words) {}
  PlacedText(std::string_view place, const char* words) : name(place), text(words) {}
  PlacedText(std::string_view place, bool set) : name(place), text(set ? "yes" : "") {}

  std::string_view name;
  std::string text;
};

/// What stands in the places. Names of lists, too, have to outlive it.
class Places {
 public:
  Places(std::initializer_list<PlacedText> texts = {}) : texts_(texts) {}

  void add(std::initializer_list<PlacedText> texts) { texts_.insert(texts_.end(), texts); }
  void add(std::string_view name, std::string text) { texts_.emplace_back(name, std::move(text)); }

  /// @param item makes one of the items, when it is written and not before: a page may have 100,000 rows.
  void longList(std::string_view name, std::size_t count, std::function<Places(std::size_t)> item) {
    lists_.push_back({name, count, std::move(item), {}});
  }

  /// @param make makes the places of an item, at once.
  template <class Items, class Make>
  void list(std::string_view name, const Items& items, const Make& make) {
    std::vector<Places> made;
    for (const auto& item : items) {
      made.push_back(make(item));
    }
    const std::size_t count = made.size();
    lists_.push_back({name, count, {}, std::move(made)});
  }

 private:
  friend class PageWriter;

  struct List {
    std::string_view name;
    std::size_t count;
    std::function<Places(std::size_t)> item;
    std::vector<Places> made;  // Without such a function.
  };
  std::vector<PlacedText> texts_;
  std::vector<List> lists_;
};

/// For lists of texts: each stands in the place of that name.
inline auto placedAs(std::string_view name) {
  return [name](const std::string& text) { return Places{{name, text}}; };
}

/// Empty for none, so that what tells of them is left out.
std::string countOrNothing(std::uint64_t count);

/// Any bytes, made clean and safe in elements and in quoted attributes.
std::string htmlText(std::string_view bytes);

/// Writes the template of that name (see PageAssets.h) with its places filled.
/// @param escape what each text goes through: so does all of logs that reaches a page.
using Escape = std::function<std::string(std::string_view)>;
void writePage(std::string_view name, const Places& places, std::ostream& out, const Escape& escape = htmlText);

}  // namespace sentiq
