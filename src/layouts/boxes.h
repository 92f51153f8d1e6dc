#pragma once

#include <utility>
#include <vector>

#include "layouts/layout.h"

/// The words in which layouts are written.
namespace merlane::boxes {

using Box = Layout::Box;

inline Box Row(std::vector<Box> parts) { return {Box::Kind::Row, std::move(parts)}; }
inline Box Column(std::vector<Box> parts) { return {Box::Kind::Column, std::move(parts)}; }
inline Box Split(std::vector<Box> parts) { return {Box::Kind::Split, std::move(parts)}; }
inline Box Fields(std::vector<Box> rows) { return {Box::Kind::Fields, std::move(rows)}; }
inline Box Notes(std::vector<Box> labels) { return {Box::Kind::Notes, std::move(labels)}; }
inline Box Scrolled(std::vector<Box> parts) { return {Box::Kind::Scrolled, std::move(parts)}; }
inline Box Picture(std::vector<Box> parts) { return {Box::Kind::Picture, std::move(parts)}; }
inline Box Pinned(std::vector<Box> parts) { return {Box::Kind::Pinned, std::move(parts)}; }
inline Box Space() { return {Box::Kind::Space, {}}; }

inline Box Grows(Box box, int share = 1) {
  box.grows = share;
  return box;
}
inline Box Lines(int lines, Box box) {
  box.lines = lines;
  return box;
}
inline Box Columns(int columns, Box box) {
  box.columns = columns;
  return box;
}
inline Box Titled(Box box, const char* title) {
  box.name = title;
  return box;
}
inline Box Set(Box::Look look, Box box) {
  box.look = look;
  return box;
}
inline Box Quiet(Box box) { return Set(Box::Look::Quiet, std::move(box)); }
inline Box FixedPitch(Box box) { return Set(Box::Look::FixedPitch, std::move(box)); }

/// A label that may take several lines.
inline Box Note(Box label) {
  label.wraps = true;
  return label;
}
inline Box Sides(std::vector<Box> parts) { return Grows({Box::Kind::Sides, std::move(parts)}); }
inline Box Group(const char* title, std::vector<Box> parts) {
  return Titled({Box::Kind::Group, std::move(parts)}, title);
}
inline Box Stage(const char* title, std::vector<Box> rows) {
  return Titled({Box::Kind::Stage, std::move(rows)}, title);
}
inline Box Figures(int lines, std::vector<Box> labels) { return Lines(lines, {Box::Kind::Figures, std::move(labels)}); }
/// The label has that many lines, the empty ones among them.
inline Box Legend(int lines, const char* canvas, const char* label) {
  return Lines(lines, {Box::Kind::Legend, {canvas, label}});
}
/// A text or a table of at least so many lines below its title.
inline Box Part(const char* title, const char* control, int lines) {
  return Column({Set(Box::Look::Title, Note(title)), Grows(Lines(lines, control))});
}

}  // namespace merlane::boxes
