#include "web/layout_text.h"

#include "base/json_text.h"

namespace merlane {
namespace {

using Box = Layout::Box;

const char* NameOf(Box::Kind kind) {
  switch (kind) {
    case Box::Kind::Control:
      return "control";
    case Box::Kind::Row:
      return "row";
    case Box::Kind::Column:
      return "column";
    case Box::Kind::Sides:
      return "sides";
    case Box::Kind::Split:
      return "split";
    case Box::Kind::Fields:
      return "fields";
    case Box::Kind::Notes:
      return "notes";
    case Box::Kind::Group:
      return "group";
    case Box::Kind::Stage:
      return "stage";
    case Box::Kind::Figures:
      return "figures";
    case Box::Kind::Legend:
      return "legend";
    case Box::Kind::Scrolled:
      return "scrolled";
    case Box::Kind::Picture:
      return "picture";
    case Box::Kind::Pinned:
      return "pinned";
    case Box::Kind::Space:
      return "space";
  }
  return "";
}

const char* NameOf(Box::Look look) {
  switch (look) {
    case Box::Look::Plain:
      return "";
    case Box::Look::Heading:
      return "heading";
    case Box::Look::Title:
      return "title";
    case Box::Look::Quiet:
      return "quiet";
    case Box::Look::FixedPitch:
      return "fixed";
    case Box::Look::Stretched:
      return "stretches";
    case Box::Look::Frameless:
      return "frameless";
    case Box::Look::Low:
      return "low";
    case Box::Look::Centred:
      return "centred";
  }
  return "";
}

const char* NameOf(Layout::Place place) {
  switch (place) {
    case Layout::Place::BesideMenu:
      return "";
    case Layout::Place::Left:
      return "left";
    case Layout::Place::Whole:
      return "whole";
    case Layout::Place::Above:
      return "above";
  }
  return "";
}

std::string JsonOfBoxes(const std::vector<Box>& boxes) {
  std::vector<std::string> parts;
  for (const Box& box : boxes) {
    JsonMembers members{{"kind", JsonOf(NameOf(box.kind))}};
    if (!box.name.empty()) members.emplace_back("name", JsonOf(box.name));
    if (box.look != Box::Look::Plain) members.emplace_back("look", JsonOf(NameOf(box.look)));
    if (box.grows != 0) members.emplace_back("grows", JsonOf(box.grows));
    if (box.lines != 0) members.emplace_back("lines", JsonOf(box.lines));
    if (box.columns != 0) members.emplace_back("columns", JsonOf(box.columns));
    if (!box.parts.empty()) members.emplace_back("parts", JsonOfBoxes(box.parts));
    parts.push_back(JsonObject(members));
  }
  return JsonArray(parts);
}

}  // namespace

std::string LayoutText(const Layout& layout) {
  return JsonObject({{"place", JsonOf(NameOf(layout.place))},
                     {"columns", JsonOf(layout.columns)},
                     {"lines", JsonOf(layout.lines)},
                     {"enter", JsonOf(layout.enter)},
                     {"escape", JsonOf(layout.escape)},
                     {"stays", JsonOf(layout.stays)},
                     {"lastByTab", JsonOf(layout.lastByTab)},
                     {"parts", JsonOfBoxes(layout.parts)}});
}

}  // namespace merlane
