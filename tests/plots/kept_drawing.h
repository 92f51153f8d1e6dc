#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "forms/desk.h"

namespace merlane::test {

using Json = nlohmann::json;

inline Json KeptPlot(const std::string& name) {
  std::ifstream file(std::string(MERLANE_GOLDEN_DIR) + "/plots/" + name + ".json");
  return Json::parse(file);
}

inline void ExpectPlace(double drawn, const Json& kept) { EXPECT_EQ(drawn, kept.get<double>()); }

inline const char* PenName(Drawing::Pen pen) {
  static constexpr const char* names[] = {"solid", "dotted", "dashed"};
  return names[static_cast<int>(pen)];
}

/// Compares one thing drawn with a kept one, place by place, colour and pen.
inline void ExpectItem(const Drawing::Item& item, const Json& kept) {
  if (const auto* line = std::get_if<Drawing::Line>(&item)) {
    ASSERT_TRUE(kept.contains("line")) << kept;
    ExpectPlace(line->x1, kept["line"][0]);
    ExpectPlace(line->y1, kept["line"][1]);
    ExpectPlace(line->x2, kept["line"][2]);
    ExpectPlace(line->y2, kept["line"][3]);
    EXPECT_EQ(line->colour, kept["colour"]) << kept;
    EXPECT_EQ(PenName(line->pen), kept["style"].get<std::string>()) << kept;
    EXPECT_EQ(line->width, kept["width"]) << kept;
  } else if (const auto* circle = std::get_if<Drawing::Circle>(&item)) {
    ASSERT_TRUE(kept.contains("circle")) << kept;
    ExpectPlace(circle->x, kept["circle"][0]);
    ExpectPlace(circle->y, kept["circle"][1]);
    ExpectPlace(circle->radius, kept["circle"][2]);
    EXPECT_EQ(circle->colour, kept["colour"]) << kept;
    EXPECT_TRUE(circle->filled);
  } else if (const auto* box = std::get_if<Drawing::Box>(&item)) {
    ASSERT_TRUE(kept.contains("box")) << kept;
    ExpectPlace(box->x1, kept["box"][0]);
    ExpectPlace(box->y1, kept["box"][1]);
    ExpectPlace(box->x2, kept["box"][2]);
    ExpectPlace(box->y2, kept["box"][3]);
    EXPECT_EQ(box->colour, kept["colour"]) << kept;
    EXPECT_TRUE(box->filled);
  } else {
    ADD_FAILURE() << "a text stands on the canvas";
  }
}

/// Compares what was drawn from item `first` on.
inline void ExpectItems(const Drawing& drawing, std::size_t first, const Json& kept) {
  ASSERT_EQ(drawing.items.size() - first, kept.size());
  for (std::size_t i = 0; i < kept.size(); ++i) ExpectItem(drawing.items[first + i], kept[i]);
}

inline void ExpectTexts(const Form& form, const Json& kept) {
  for (const auto& [name, text] : kept.items()) {
    const Control* control = form.Find(name);
    ASSERT_NE(control, nullptr) << name;
    EXPECT_EQ(control->text, text.get<std::string>()) << name;
  }
}

}  // namespace merlane::test
