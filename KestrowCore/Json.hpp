// JSON text in and out. The only file family that includes the JSON libraries; no type of theirs is
// seen here. Records say how they travel through JsonRecord.hpp; what is here is the level below: a
// parsed document to walk through, and a writer to build one.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kestrow::json {

// Where in a document something is wrong, and what.
struct Error {
  std::string path;  // such as "live[3].innings[0].overs"; empty for the document itself
  std::string reason;

  std::string description() const;  // "path: reason"
  bool operator==(const Error&) const = default;
};

enum class Kind { null, boolean, number, text, array, object };

// A value of a parsed document: as cheap to copy as two pointers, good while its document lives.
class Value {
 public:
  using Words = std::array<std::uintptr_t, 2>;
  explicit Value(Words words) : words_(words) {}

  Kind kind() const;
  bool isNull() const { return kind() == Kind::null; }

  // The value when it is of that kind, else nothing.
  std::optional<bool> boolean() const;
  std::optional<double> number() const;
  std::optional<std::string_view> text() const;  // a view into the document

  // A whole number that fits 64 bits, however it is written (1, 1.0, 1e0), else nothing.
  std::optional<std::int64_t> integer() const;

  // The value under the key (the first, should there be several); nothing when there is none or
  // this is not an object. Looks at one key after the other.
  std::optional<Value> find(std::string_view key) const;

  const Words& words() const { return words_; }

 private:
  Words words_;
};

// Walks through the items of an array; there are none in a value that is not an array.
class Items {
 public:
  explicit Items(const Value& array);
  std::optional<Value> next();
  std::size_t count() const { return count_; }  // of all items; short of it above 16 million

 private:
  Value::Words position_{};
  Value::Words end_{};
  std::size_t count_ = 0;
};

struct Entry {
  std::string_view key;  // a view into the document
  Value value;
};

// Walks through the entries of an object in the order written; there are none in a value that is
// not an object.
class Entries {
 public:
  explicit Entries(const Value& object);
  std::optional<Entry> next();

 private:
  Value::Words position_{};
  Value::Words end_{};
};

// A parsed document. The whole text is checked, to its last byte: syntax, UTF-8, numbers that fit.
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
