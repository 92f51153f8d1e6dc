#pragma once

#include <cstdint>
#include <exception>
#include <string_view>

struct XML_ParserStruct;

namespace merlane {

/// The attributes of an element, by their names without a prefix.
class XmlAttributes {
 public:
  /// Names and values by turns, ended by null.
  explicit XmlAttributes(const char** pairs) : pairs_(pairs) {}
  /// Empty when there is none of that name.
  std::string_view operator[](std::string_view name) const;

 private:
  const char** pairs_;
};

/// Takes what an XML text holds, in its order and in UTF-8. Names come without their prefixes.
class XmlReader {
 public:
  virtual ~XmlReader() = default;
  virtual void Begin(std::string_view /*element*/, const XmlAttributes& /*attributes*/) {}
  virtual void End(std::string_view /*element*/) {}
  /// A piece of the text of the element that was begun last; there may be several.
  virtual void Text(std::string_view /*piece*/) {}
};

/// Reads an XML text that comes in pieces. Takes bounded memory with whatever comes; nothing of a document type is
/// read, so that no entity can grow. RuntimeFailure when it is no well-formed XML, holds a document type, or is nested
/// or has tags beyond what any program writes. What the reader throws comes through.
class XmlStream {
 public:
  explicit XmlStream(XmlReader& reader);
  ~XmlStream();
  XmlStream(const XmlStream&) = delete;
  XmlStream& operator=(const XmlStream&) = delete;

  void Take(std::string_view piece);
  /// Behind the last piece.
  void Finish();

 private:
  struct Handlers;
  void Parse(std::string_view piece, bool last);

  XmlReader& reader_;
  XML_ParserStruct* parser_;
  std::exception_ptr thrown_;  // by the reader, on the other side of the library
  std::uint64_t taken_ = 0;
  int depth_ = 0;
};

}  // namespace merlane
