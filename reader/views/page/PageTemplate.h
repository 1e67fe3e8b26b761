// Pages with named places, and what stands in these: as much of the Mustache language as the report page needs.
//   {{name}}              the text of that name, made safe for HTML
//   {{{name}}}            an asset, as it is
//   {{#name}}…{{/name}}   once for each item of the list of that name, or when the text is not empty
//   {{^name}}…{{/name}}   when there is no such item or text
//   {{>name}}             another template
// Names are looked up from the innermost item outwards.
#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sentiq {

/// What stands in the places. Names have to outlive it: they are literals.
class Places {
 public:
  using Item = std::function<Places(std::size_t)>;

  void text(std::string_view name, std::string text);
  void flag(std::string_view name, bool set) { text(name, set ? "yes" : ""); }

  /// @param item makes one of the items, when it is written and not before: a page may have 100,000 rows.
  void list(std::string_view name, std::size_t count, Item item);

  template <class T, class Make>
  void list(std::string_view name, std::vector<T> items, Make make) {
    const std::size_t count = items.size();
    list(name, count, [items = std::move(items), make](std::size_t i) { return make(items[i]); });
  }

 private:
  friend class PageWriter;

  struct List {
    std::size_t count;
    Item item;
  };
  std::vector<std::pair<std::string_view, std::string>> texts_;
  std::vector<std::pair<std::string_view, List>> lists_;
};

/// Writes the template of that name (see PageAssets.h) with its places filled. All text of logs that reaches a page
/// goes through here, and so through htmlText().
void writePage(std::string_view name, const Places& places, std::ostream& out);

}  // namespace sentiq
