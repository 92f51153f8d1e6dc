#pragma once

#include <functional>
#include <string>
#include <vector>

namespace merlane {

/// How the window of a form is laid out, by the names of its controls. It is data: a host draws it with what it has.
struct Layout {
  /// A part of a window: a control, or others beside or below each other.
  struct Box {
    enum class Kind {
      Control,
      Row,       // side by side, from the left
      Column,    // one below the other, from the top
      Sides,     // large parts side by side; on a narrow screen they may stand below each other
      Split,     // large parts one below the other; a person may change their shares of the room
      Fields,    // rows of controls, which stand below each other: captions and their fields
      Notes,     // labels one below the other, to be read as one
      Group,     // a column in a frame with a title, which is seen while one of its controls is
      Stage,     // a step of an analysis: its number, its title and rows of buttons
      Figures,   // texts that come and go, side by side; the room for their lines is kept
      Legend,    // a canvas with boxes and the label that tells of them: a line for each, and an empty one between two
      Scrolled,  // a column that can be scrolled by itself
      Picture,   // a column that can be saved as a picture
      Pinned,    // side by side at the right, below all else and always in sight
      Space      // the room that is left
    };
    /// How a control is set. That of several labels (Notes, Figures) is that of each.
    enum class Look {
      Plain,
      Heading,
      Title,
      Quiet,
      FixedPitch,
      Stretched,  // a drawing fills its place, whatever the proportions of that
      Frameless,  // a text stands on the page
      Low,        // at the lower end of its row
      Centred     // in the middle of its column, no wider than it need be
    };

    Box(const char* control) : name(control) {}  // NOLINT: a control is a box
    Box(Kind boxKind, std::vector<Box> boxParts) : kind(boxKind), parts(std::move(boxParts)) {}

    Kind kind = Kind::Control;
    std::string name;  // of the control; the title of a group or a stage
    std::vector<Box> parts{};
    Look look = Look::Plain;
    bool wraps = false;  // a label may take several lines
    int grows = 0;       // its share of the room that is left
    int lines = 0;       // of text, that it has at least
    int columns = 0;     // of fixed-pitch text, that it has at least
  };

  /// Where a window opens: in the room beside the menu; at the left, where the menu stands; over all of it; or above
  /// all other windows, at their upper left corner.
  enum class Place { BesideMenu, Left, Whole, Above };

  Place place = Place::BesideMenu;
  int columns = 0, lines = 0;  // of fixed-pitch text, that the window would like to show
  std::string enter{};         // the button that Enter presses
  std::string escape{};        // the button that Escape presses, or Closes
  bool stays = false;          // its frame offers no way to close it
  std::vector<Box> parts{};
  /// Controls that Tab comes to behind all others that are not pinned; it goes to these in the order of the boxes.
  std::vector<std::string> lastByTab{};

  /// Escape closes the window as its frame does.
  static constexpr const char* Closes = "close";
};

/// Calls this for every control that is named in the boxes, in their order.
void ForEachControl(const std::vector<Layout::Box>& boxes, const std::function<void(const std::string& name)>& look);

}  // namespace merlane
