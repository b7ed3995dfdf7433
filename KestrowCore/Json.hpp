// JSON text in and out. The only file family that includes the JSON libraries; no type of theirs is
// seen here. Records say how they travel through JsonRecord.hpp; what is here is the level below: a
// parsed document to walk through, and a writer to build one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace kestrow::json {

// Where in a document something is wrong, and what.
struct Error {
  std::string path;  // such as "live[3].innings[0].overs"; empty for the document itself
  std::string reason;

  std::string description() const;  // "path: reason"
  bool operator==(const Error&) const = default;
};

enum class Kind { null, boolean, integer, real, text, array, object };

// A cursor into a parsed document.
struct Place {
  std::uintptr_t document = 0;
  std::uintptr_t position = 0;
};

struct ArrayPlace : Place {};
struct ObjectPlace : Place {};

// A value of a parsed document, taken out of it: cheap to copy, good while its document lives (a
// text and a container refer to it).
class Value {
 public:
  // In the order of the kinds.
  using Content = std::variant<std::monostate, bool, std::int64_t, double, std::string_view,
                               ArrayPlace, ObjectPlace>;

  const Content& content() const { return content_; }

  // For who reads the document: puts the content in place, for copying it is what costs.
  Content& content() { return content_; }

  Kind kind() const { return static_cast<Kind>(content_.index()); }
  bool isNull() const { return kind() == Kind::null; }

  // Gives the value when it is of that kind; else false. An integer is a whole number that fits 64
  // bits, however it is written (1, 1.0, 1e0); a double is any number.
  bool get(bool& out) const { return getExactly(out); }
  bool get(std::int64_t& out) const { return getExactly(out) || getWhole(out); }
  bool get(std::string_view& out) const { return getExactly(out); }
  bool get(double& out) const {
    if (const auto* integer = std::get_if<std::int64_t>(&content_)) {
      out = static_cast<double>(*integer);
      return true;
    }
    return getExactly(out);
  }

  // The same, with nothing for a value of another kind.
  std::optional<bool> boolean() const { return as<bool>(); }
  std::optional<double> number() const { return as<double>(); }
  std::optional<std::int64_t> integer() const { return as<std::int64_t>(); }
  std::optional<std::string_view> text() const { return as<std::string_view>(); }

  // The value under the key (the first, should there be several); nothing when there is none or
  // this is not an object. Looks at one key after the other.
  std::optional<Value> find(std::string_view key) const;

 private:
  template <class T>
  bool getExactly(T& out) const {
    const auto* value = std::get_if<T>(&content_);
    if (!value) return false;
    out = *value;
    return true;
  }

  template <class T>
  std::optional<T> as() const {
    T value{};
    if (!get(value)) return std::nullopt;
    return value;
  }

  bool getWhole(std::int64_t& out) const;

  Content content_;
};

// Walks through the items of an array: `Items items(value); for (Value item; items.next(item);)`.
// There are none in a value that is not an array.
class Items {
 public:
  explicit Items(const Value& array);
  bool next(Value& item) {  // false behind the last one
    if (next_.position == end_.position) return false;
    next_ = take(next_, item);
    return true;
  }
  std::size_t count() const { return count_; }  // of all items; short of it above 16 million

 private:
  // Gives the place of the item behind this one. (By value, to stay in registers.)
  static Place take(Place place, Value& item);

  Place next_;
  Place end_;
  std::size_t count_ = 0;
};

struct Entry {
  std::string_view key;  // a view into the document
  Value value;
};

// Walks in the same way through the entries of an object, in the order written.
class Entries {
 public:
  explicit Entries(const Value& object);
  bool next(Entry& entry) {  // false behind the last one
    if (next_.position == end_.position) return false;
    next_ = take(next_, entry);
    return true;
  }

 private:
  // Gives the place of the entry behind this one. (By value, to stay in registers.)
  static Place take(Place place, Entry& entry);

  Place next_;
  Place end_;
};

// A parsed document. The whole text is checked, to its last byte: syntax, UTF-8, numbers that a
// double can hold.
class Document {
 public:
  // Containers within containers, at most. Deeper ones are refused: no record of ours comes near.
  static constexpr std::size_t maxDepth = 64;

  static std::expected<Document, Error> parse(std::string_view body);

  Document(Document&&) noexcept;
  Document& operator=(Document&&) noexcept;
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;
  ~Document();

  Value root() const;

 private:
  struct Parsed;
  explicit Document(std::unique_ptr<Parsed> parsed);
  std::unique_ptr<Parsed> parsed_;
};

enum class Layout {
  compact,
  prettySorted,  // indented by two spaces, keys in the order of their bytes
};

// Builds a document from the outside in. Objects take a key before each value, and keep the order
// of their keys. Begin and end must match.
class Writer {
 public:
  Writer();
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  ~Writer();

  void beginObject();
  void endObject();
  void beginArray();
  void endArray();
  void key(std::string_view key);

  void boolean(bool value);
  void integer(std::int64_t value);
  void number(double value);  // null when it is not finite
  void text(std::string_view value);

  // The document; fails when a text is not UTF-8.
  std::expected<std::string, Error> finish(Layout layout) const;

  // The document, with U+FFFD for bytes that are not UTF-8.
  std::string finishReplacing(Layout layout) const;

 private:
  struct Building;
  std::unique_ptr<Building> building_;
};

}  // namespace kestrow::json
