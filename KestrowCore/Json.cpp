#include "KestrowCore/Json.hpp"

#include <nlohmann/json.hpp>
#include <simdjson.h>

#include <algorithm>
#include <bit>
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
Cursor unpacked(Place place) {
  static_assert(sizeof(Cursor) == sizeof(Place) && std::is_trivially_copyable_v<Cursor>);
  return std::bit_cast<Cursor>(place);
}

template <class Cursor>
Place packed(const Cursor& cursor) {
  return std::bit_cast<Place>(cursor);
}

void read(dom::element element, Value::Content& out) {
  switch (element.type()) {
    case dom::element_type::ARRAY:
      out.emplace<ArrayPlace>(ArrayPlace{packed(element)});
      return;
    case dom::element_type::OBJECT:
      out.emplace<ObjectPlace>(ObjectPlace{packed(element)});
      return;
    case dom::element_type::INT64:
      out.emplace<std::int64_t>(element.get_int64().value_unsafe());
      return;
    case dom::element_type::UINT64:  // only those beyond int64: near enough, for no integer fits
    case dom::element_type::DOUBLE:
      out.emplace<double>(element.get_double().value_unsafe());
      return;
    case dom::element_type::STRING:
      out.emplace<std::string_view>(element.get_string().value_unsafe());
      return;
    case dom::element_type::BOOL:
      out.emplace<bool>(element.get_bool().value_unsafe());
      return;
    case dom::element_type::NULL_VALUE:
      break;
  }
  out.emplace<std::monostate>();
}

// The length of what stands at the front of the JSON: a quotation mark, an escape, a number, or
// something up to the next of these.
std::size_t lengthOfPiece(std::string_view body, bool isInText) {
  constexpr std::string_view numbers = "0123456789+-.eE";
  if (isInText && body.front() == '\\') return 2;
  if (isInText) return std::max(body.find_first_of("\"\\"), std::size_t{1});
  if (numbers.contains(body.front())) return body.find_first_not_of(numbers);
  return std::max(body.find_first_of("\"0123456789+-.eE"), std::size_t{1});
}

bool isVeryLongInteger(std::string_view piece) {
  constexpr std::size_t mostDigits = 19;  // of one that may fit 64 bits
  return piece.size() - (piece.starts_with('-') ? 1 : 0) > mostDigits &&
         piece.find_first_not_of("-0123456789") == std::string_view::npos;
}

// The JSON with its very long integers written as reals, for the library takes an integer that does
// not fit for a mistake in the text. It is none: who reads it can say where it stands, and where
// nobody does, it does no harm.
std::string withLongIntegersAsReals(std::string_view body) {
  std::string out;
  bool isInText = false;
  while (!body.empty()) {
    const std::string_view piece = body.substr(0, lengthOfPiece(body, isInText));
    out.append(piece);
    if (piece == "\"") {
      isInText = !isInText;
    } else if (!isInText && isVeryLongInteger(piece)) {
      out += "e0";
    }
    body.remove_prefix(piece.size());
  }
  return out;
}

std::string reason(simdjson::error_code code) {
  return std::string("not valid JSON: ") + simdjson::error_message(code);
}

}  // namespace

std::string Error::description() const {
  return path.empty() ? reason : path + ": " + reason;
}

bool Value::getWhole(std::int64_t& out) const {
  const auto* real = std::get_if<double>(&content_);
  constexpr double limit = 9223372036854775808.0;  // 2^63, the first that does not fit
  if (!real || *real < -limit || *real >= limit) return false;
  out = static_cast<std::int64_t>(*real);
  return static_cast<double>(out) == *real;
}

std::optional<Value> Value::find(std::string_view key) const {
  Entries entries(*this);
  for (Entry entry; entries.next(entry);) {
    if (entry.key == key) return entry.value;
  }
  return std::nullopt;
}

// What these four call goes into them: a call for each value is what walking costs.
[[gnu::flatten]] Items::Items(const Value& array) {
  const auto* place = std::get_if<ArrayPlace>(&array.content());
  if (!place) return;
  const dom::array items = unpacked<dom::element>(*place).get_array().value_unsafe();
  next_ = packed(items.begin());
  end_ = packed(items.end());
  count_ = items.size();
}

[[gnu::flatten]] Place Items::take(Place place, Value& item) {
  auto cursor = unpacked<dom::array::iterator>(place);
  read(*cursor, item.content());
  return packed(++cursor);
}

[[gnu::flatten]] Entries::Entries(const Value& object) {
  const auto* place = std::get_if<ObjectPlace>(&object.content());
  if (!place) return;
  const dom::object entries = unpacked<dom::element>(*place).get_object().value_unsafe();
  next_ = packed(entries.begin());
  end_ = packed(entries.end());
}

[[gnu::flatten]] Place Entries::take(Place place, Entry& entry) {
  auto cursor = unpacked<dom::object::iterator>(place);
  entry.key = cursor.key();
  read(cursor.value(), entry.value.content());
  return packed(++cursor);
}

struct Document::Parsed {
  dom::parser parser;
  dom::element root;

  simdjson::error_code read(std::string_view body) {
    const auto code = parser.allocate(std::max(body.size(), std::size_t{64}), maxDepth);
    return code == simdjson::SUCCESS ? parser.parse(body.data(), body.size()).get(root) : code;
  }
};

Document::Document(std::unique_ptr<Parsed> parsed) : parsed_(std::move(parsed)) {}
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;
Document::~Document() = default;

std::expected<Document, Error> Document::parse(std::string_view body) {
  auto parsed = std::make_unique<Parsed>();
  auto code = parsed->read(body);
  if (code == simdjson::NUMBER_ERROR) code = parsed->read(withLongIntegersAsReals(body));
  if (code != simdjson::SUCCESS) return std::unexpected(Error{.path = "", .reason = reason(code)});
  return Document(std::move(parsed));
}

Value Document::root() const {
  Value root;
  read(parsed_->root, root.content());
  return root;
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
