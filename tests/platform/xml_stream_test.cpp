#include "platform/xml_stream.h"

#include <gmock/gmock.h>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

/// Writes down what it takes.
class Notes : public XmlReader {
 public:
  std::string text;
  void Begin(std::string_view element, const XmlAttributes& attributes) override {
    text += '<' + std::string(element) + ' ' + std::string(attributes["id"]) + '>';
    if (element == "bad") throw RuntimeFailure("a bad element");
  }
  void End(std::string_view element) override { text += "</" + std::string(element) + '>'; }
  void Text(std::string_view piece) override { text += piece; }
};

std::string Read(const std::vector<std::string>& pieces) {
  Notes notes;
  XmlStream stream(notes);
  for (const std::string& piece : pieces) stream.Take(piece);
  stream.Finish();
  return notes.text;
}

TEST(XmlStream, PiecesMayEndAnywhereAndNamesLoseTheirPrefixes) {
  EXPECT_EQ(Read({"<?xml version=\"1.0\"?><x:a r:i", "d=\"1\" other=\"2\">M\xC3", "\x96W&am", "p;E</x:a>"}),
            "<a 1>M\u00D6W&E</a>");
}

TEST(XmlStream, WhatTheReaderThrowsComesThrough) {
  EXPECT_THAT([] { Read({"<a><bad/></a>"}); }, ThrowsMessage<RuntimeFailure>("a bad element"));
}

TEST(XmlStream, WhatIsNotWellFormedIsRefusedWithItsLine) {
  EXPECT_THAT([] { Read({"<a>\n<b></a>"}); }, ThrowsMessage<RuntimeFailure>(HasSubstr("line 2 is no XML")));
  EXPECT_THAT([] { Read({"<a>"}); }, ThrowsMessage<RuntimeFailure>(HasSubstr("is no XML")));
  EXPECT_THAT([] { Read({}); }, ThrowsMessage<RuntimeFailure>(HasSubstr("is no XML")));
}

TEST(XmlStream, ADocumentTypeIsRefusedBeforeAnyEntityGrows) {
  EXPECT_THAT([] { Read({"<!DOCTYPE a [<!ENTITY b \"bb\">]><a>&b;</a>"}); },
              ThrowsMessage<RuntimeFailure>(HasSubstr("document type")));
}

TEST(XmlStream, ElementsInElementsWithoutEndAreRefused) {
  std::string deep;
  for (int i = 0; i < 1000; ++i) deep += "<a>";
  EXPECT_THAT([&] { Read({deep}); }, ThrowsMessage<RuntimeFailure>(HasSubstr("too deeply")));
}

TEST(XmlStream, ATagWithoutEndIsRefusedBeforeItFillsTheMemory) {
  Notes notes;
  XmlStream stream(notes);
  stream.Take("<a id=\"");
  const std::string piece(1 << 20, 'x');
  EXPECT_THAT(
      [&] {
        for (int i = 0; i < 100; ++i) stream.Take(piece);
      },
      ThrowsMessage<RuntimeFailure>(HasSubstr("longer than any spreadsheet writes")));
}

}  // namespace
}  // namespace merlane
