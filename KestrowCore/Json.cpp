#include "KestrowCore/Json.hpp"

#include <simdjson.h>

#include <algorithm>
#include <bit>
#include <nlohmann/json.hpp>
#include <type_traits>
#include <utility>
#include <vector>

namespace kestrow::json {

namespace {

namespace dom = simdjson::dom;
using nlohmann::ordered_json;

// The library's cursors are a document's address and a place on its tape: two words that the header
// can hold without knowing the library.
template <class Cursor>
Cursor unpacked(const Value::Words& words) {
  static_assert(sizeof(Cursor) == sizeof(Value::Words) && std::is_trivially_copyable_v<Cursor>);
  return std::bit_cast<Cursor>(words);
}

template <class Cursor>
Value::Words packed(const Cursor& cursor) {
  return std::bit_cast<Value::Words>(cursor);
}

dom::element element(const Value& value) {
  return unpacked<dom::element>(value.words());
}

template <class T>
std::optional<T> taken(simdjson::simdjson_result<T> result) {
  T value;
  if (std::move(result).get(value) != simdjson::SUCCESS) return std::nullopt;
  return value;
}

std::string reason(simdjson::error_code code) {
  return std::string("not valid JSON: ") + simdjson::error_message(code);
}

}  // namespace

std::string Error::description() const {
  return path.empty() ? reason : path + ": " + reason;
}

Kind Value::kind() const {
  switch (element(*this).type()) {
    case dom::element_type::ARRAY:
      return Kind::array;
    case dom::element_type::OBJECT:
      return Kind::object;
    case dom::element_type::INT64:
    case dom::element_type::UINT64:
    case dom::element_type::DOUBLE:
      return Kind::number;
    case dom::element_type::STRING:
      return Kind::text;
    case dom::element_type::BOOL:
      return Kind::boolean;
    case dom::element_type::NULL_VALUE:
      break;
  }
  return Kind::null;
}

std::optional<bool> Value::boolean() const {
  return taken(element(*this).get_bool());
}

std::optional<double> Value::number() const {
  return taken(element(*this).get_double());
}

std::optional<std::string_view> Value::text() const {
  return taken(element(*this).get_string());
}

std::optional<std::int64_t> Value::integer() const {
  const auto self = element(*this);
  if (const auto whole = taken(self.get_int64())) return whole;
  if (self.type() != dom::element_type::DOUBLE) return std::nullopt;
  constexpr double limit = 9223372036854775808.0;  // 2^63, the first that does not fit
  const auto number = taken(self.get_double());
  if (!number || *number < -limit || *number >= limit) return std::nullopt;
  const auto whole = static_cast<std::int64_t>(*number);
  if (static_cast<double>(whole) != *number) return std::nullopt;
  return whole;
}

std::optional<Value> Value::find(std::string_view key) const {
  Entries entries(*this);
  while (const auto entry = entries.next()) {
    if (entry->key == key) return entry->value;
  }
  return std::nullopt;
}

Items::Items(const Value& array) {
  const auto items = taken(element(array).get_array());
  if (!items) return;
  position_ = packed(items->begin());
  end_ = packed(items->end());
  count_ = items->size();
}

std::optional<Value> Items::next() {
  if (position_ == end_) return std::nullopt;
  auto cursor = unpacked<dom::array::iterator>(position_);
  const Value value(packed(*cursor));
  position_ = packed(++cursor);
  return value;
}

Entries::Entries(const Value& object) {
  const auto entries = taken(element(object).get_object());
  if (!entries) return;
  position_ = packed(entries->begin());
  end_ = packed(entries->end());
}

std::optional<Entry> Entries::next() {
  if (position_ == end_) return std::nullopt;
  auto cursor = unpacked<dom::object::iterator>(position_);
  const Entry entry{.key = cursor.key(), .value = Value(packed(cursor.value()))};
  position_ = packed(++cursor);
  return entry;
}

struct Document::Parsed {
  dom::parser parser;
  dom::element root;
};

Document::Document(std::unique_ptr<Parsed> parsed) : parsed_(std::move(parsed)) {}
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;
Document::~Document() = default;

std::expected<Document, Error> Document::parse(std::string_view body) {
  auto parsed = std::make_unique<Parsed>();
  auto& parser = parsed->parser;
  auto code = parser.allocate(std::max(body.size(), std::size_t{64}), maxDepth);
  if (code == simdjson::SUCCESS) code = parser.parse(body.data(), body.size()).get(parsed->root);
  if (code != simdjson::SUCCESS) return std::unexpected(Error{.path = "", .reason = reason(code)});
  return Document(std::move(parsed));
}

Value Document::root() const {
  return Value(packed(parsed_->root));
}

struct Writer::Building {
  ordered_json root;
  // The containers begun and not ended. A container is not added to while one inside it is open, so
  // the addresses hold.
  std::vector<ordered_json*> open;
  std::string key;

  ordered_json& add(ordered_json value) {
    if (open.empty()) return root = std::move(value);
    auto& container = *open.back();
    if (container.is_array()) return container.emplace_back(std::move(value));
    return container[std::exchange(key, {})] = std::move(value);
  }

  std::string dump(Layout layout, ordered_json::error_handler_t invalidText) const {
    if (layout == Layout::compact) return root.dump(-1, ' ', false, invalidText);
    return nlohmann::json(root).dump(2, ' ', false, invalidText);
  }
};

Writer::Writer() : building_(std::make_unique<Building>()) {}
Writer::~Writer() = default;

void Writer::beginObject() {
  building_->open.push_back(&building_->add(ordered_json::object()));
}
void Writer::endObject() {
  building_->open.pop_back();
}
void Writer::beginArray() {
  building_->open.push_back(&building_->add(ordered_json::array()));
}
void Writer::endArray() {
  building_->open.pop_back();
}
void Writer::key(std::string_view key) {
  building_->key = key;
}

void Writer::boolean(bool value) {
  building_->add(value);
}
void Writer::integer(std::int64_t value) {
  building_->add(value);
}
void Writer::number(double value) {
  building_->add(value);
}
void Writer::text(std::string_view value) {
  building_->add(value);
}

std::expected<std::string, Error> Writer::finish(Layout layout) const {
  try {
    return building_->dump(layout, ordered_json::error_handler_t::strict);
  } catch (const ordered_json::type_error&) {
    return std::unexpected(Error{.path = "", .reason = "a text is not UTF-8"});
  }
}

std::string Writer::finishReplacing(Layout layout) const {
  return building_->dump(layout, ordered_json::error_handler_t::replace);
}

}  // namespace kestrow::json
