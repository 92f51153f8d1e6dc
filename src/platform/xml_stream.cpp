#include "platform/xml_stream.h"

#include <expat.h>
#include <fmt/format.h>

#include <new>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

constexpr int DeepestElement = 100;
constexpr std::uint64_t LongestTag = std::uint64_t{8} << 20;  // kept whole in memory until its end has come

std::string_view WithoutPrefix(std::string_view name) {
  const std::size_t colon = name.rfind(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

}  // namespace

std::string_view XmlAttributes::operator[](std::string_view name) const {
  for (const char** pair = pairs_; *pair != nullptr; pair += 2)
    if (WithoutPrefix(pair[0]) == name) return pair[1];
  return "";
}

/// What the library calls. It is C, through which nothing may be thrown.
struct XmlStream::Handlers {
  template <class Work>
  static void Guarded(void* data, Work work) {
    XmlStream& stream = *static_cast<XmlStream*>(data);
    if (stream.thrown_) return;
    try {
      work(stream);
    } catch (...) {
      stream.thrown_ = std::current_exception();
      XML_StopParser(stream.parser_, XML_FALSE);
    }
  }
  static void Begin(void* data, const char* name, const char** attributes) {
    Guarded(data, [=](XmlStream& stream) {
      if (++stream.depth_ > DeepestElement) throw RuntimeFailure("its elements are nested too deeply");
      stream.reader_.Begin(WithoutPrefix(name), XmlAttributes(attributes));
    });
  }
  static void End(void* data, const char* name) {
    Guarded(data, [=](XmlStream& stream) {
      --stream.depth_;
      stream.reader_.End(WithoutPrefix(name));
    });
  }
  static void Text(void* data, const char* text, int length) {
    Guarded(data, [=](XmlStream& stream) { stream.reader_.Text({text, static_cast<std::size_t>(length)}); });
  }
  static void Doctype(void* data, const char*, const char*, const char*, int) {
    Guarded(data, [](XmlStream&) { throw RuntimeFailure("it holds a document type, which no spreadsheet writes"); });
  }
};

XmlStream::XmlStream(XmlReader& reader) : reader_(reader), parser_(XML_ParserCreate(nullptr)) {
  if (parser_ == nullptr) throw std::bad_alloc();
  XML_SetUserData(parser_, this);
  XML_SetElementHandler(parser_, Handlers::Begin, Handlers::End);
  XML_SetCharacterDataHandler(parser_, Handlers::Text);
  XML_SetStartDoctypeDeclHandler(parser_, Handlers::Doctype);
}

XmlStream::~XmlStream() { XML_ParserFree(parser_); }

void XmlStream::Take(std::string_view piece) { Parse(piece, false); }

void XmlStream::Finish() { Parse("", true); }

void XmlStream::Parse(std::string_view piece, bool last) {
  const XML_Status status =
      XML_Parse(parser_, piece.data(), static_cast<int>(piece.size()), last ? XML_TRUE : XML_FALSE);
  if (thrown_) std::rethrow_exception(thrown_);
  if (status == XML_STATUS_ERROR) {
    const XML_Error error = XML_GetErrorCode(parser_);
    if (error == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
    throw RuntimeFailure(
        fmt::format("line {} is no XML: {}", XML_GetCurrentLineNumber(parser_), XML_ErrorString(error)));
  }
  taken_ += piece.size();
  const XML_Index at = XML_GetCurrentByteIndex(parser_);
  if (at >= 0 && taken_ - static_cast<std::uint64_t>(at) > LongestTag)
    throw RuntimeFailure("it holds a tag longer than any spreadsheet writes");
}

}  // namespace merlane
