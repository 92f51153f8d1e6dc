#pragma once

#include <functional>
#include <string>
#include <vector>

#include "forms/drawing.h"

namespace merlane {

class Form;

/// The 16 colours of the classic palette that forms and plots use, by index.
enum class Colour : signed char {
  Default = -1,
  Black = 0,
  Blue = 1,
  Green = 2,
  Cyan = 3,
  Red = 4,
  Magenta = 5,
  Brown = 6,
  LightGray = 7,
  Gray = 8,
  LightBlue = 9,
  LightGreen = 10,
  LightCyan = 11,
  LightRed = 12,
  LightMagenta = 13,
  Yellow = 14,
  White = 15
};

/// A named thing on a form. Its state is plain data that handlers write and hosts read; what a form looks like when it
/// is loaded is what its constructor left here.
class Control {
 public:
  Control(Form& form, std::string controlName, std::string initialText);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  Form& form;
  const std::string name;
  std::string text;  // caption of a button, contents of a box
  std::string toolTip;
  bool enabled = true;
  bool visible = true;
  /// A control that stays pressable while a long calculation runs: its handler sets a flag and no more.
  bool offeredWhileBusy = false;
  /// A control that begins nothing on a form that begins commands: it does not rest with them.
  bool beginsNothing = false;

  /// True when a person can use the control, as far as the form goes and who is in charge.
  bool TakesInput() const;

  /// Called behind each command while the form is loaded: what it shows may have become old.
  virtual void BringUpToDate() {}
  /// Remembers the present state as the design state / returns to it. Called by the form.
  virtual void KeepDesign();
  virtual void RestoreDesign();

 private:
  std::string designText_;
  std::string designToolTip_;
  bool designEnabled_ = true;
  bool designVisible_ = true;
};

/// A text to be read.
class Label : public Control {
 public:
  using Control::Control;
  Colour fore = Colour::Default;
};

/// A button to be pressed.
class Button : public Control {
 public:
  using Control::Control;
  std::function<void()> onClick;
};

/// A control that is on or off.
class Switch : public Control {
 public:
  using Control::Control;
  bool value = false;
  std::function<void()> onClick;
  void KeepDesign() override;
  void RestoreDesign() override;

 private:
  bool designValue_ = false;
};

/// One of the exclusive choices of a form; choosing it clears the others of its group.
class OptionButton : public Switch {
 public:
  OptionButton(Form& f, std::string n, std::string caption, int optionGroup = 0)
      : Switch(f, std::move(n), std::move(caption)), group(optionGroup) {}
  const int group;
};

/// A choice that can be made and taken back by itself.
class CheckBox : public Switch {
 public:
  using Switch::Switch;
};

/// One line of text.
class TextBox : public Control {
 public:
  using Control::Control;
  bool readOnly = false;
  std::function<void()> onClick;  // a click into the box
  std::function<void()> onLeave;  // the text was typed and the box left
};

/// A line of text that may be typed or picked from a list.
class ComboBox : public Control {
 public:
  using Control::Control;
  std::vector<std::string> items;
  std::function<void()> onChange;
};

/// A list of lines of which one can be selected.
class ListBox : public Control {
 public:
  ListBox(Form& f, std::string n) : Control(f, std::move(n), "") {}
  std::vector<std::string> items;
  int selected = -1;  // from 0; -1 none
  std::function<void()> onSelect;
  std::function<void()> onDoubleClick;
};

/// A table of text cells. Row 0 is the first heading row and column 0 the first column, headings included.
class Grid : public Control {
 public:
  struct Cell {
    std::string text;
    Colour fore = Colour::Default;
    Colour back = Colour::Default;
    bool operator==(const Cell&) const = default;
  };

  Grid(Form& f, std::string n) : Control(f, std::move(n), "") {}

  /// Makes the grid that large; cells that stay keep their contents.
  void Resize(int rowCount, int columnCount);
  int Rows() const { return rows_; }
  int Columns() const { return columns_; }
  /// True for a row and a column that the grid has, headings included.
  bool Has(int row, int column) const { return row >= 0 && row < rows_ && column >= 0 && column < columns_; }
  Cell& At(int row, int column);
  const Cell& At(int row, int column) const;

  int headingRows = 1;
  int selectedRow = -1;
  int topRow = 1;                  // first row in view below the headings
  std::vector<int> widths;         // of the first columns, in characters; the others: by contents
  bool selectsRows = false;        // a click selects a row
  std::vector<bool> typedColumns;  // the columns whose cells are typed into (arrows, Enter and paste work there)

  std::function<void(int row, int column)> onClick;
  std::function<void(int row, int column)> onDoubleClick;
  /// An entry box laid over cell (row, column) was left with this text.
  std::function<void(int row, int column, const std::string& entry)> onEntry;

 private:
  int rows_ = 0, columns_ = 0;
  std::vector<Cell> cells_;
};

/// Many lines of text, which scroll and can be copied from. One that is not read-only is edited when that is asked for;
/// till then keys scroll it.
class Pane : public Control {
 public:
  Pane(Form& f, std::string n) : Control(f, std::move(n), "") {}
  bool readOnly = true;
  bool fixedPitch = true;
  bool wraps = false;  // lines that are too long go on below; else the pane scrolls to their ends
};

/// An entry of a menu bar. Entries with the same parent make a menu; a parent of null stands in the bar.
class MenuEntry : public Control {
 public:
  MenuEntry(Form& f, std::string n, std::string caption, MenuEntry* parentEntry = nullptr)
      : Control(f, std::move(n), std::move(caption)), parent(parentEntry) {}
  MenuEntry* const parent;
  std::function<void()> onClick;
};

/// A bar of panels, counted from 1, each with a line of text.
class StatusBar : public Control {
 public:
  StatusBar(Form& f, std::string n, int panels)
      : Control(f, std::move(n), ""), panels_(static_cast<std::size_t>(panels)) {}
  /// Writes a panel and tells the window system when the text is a new one.
  void Set(int panel, const std::string& panelText);
  const std::string& Get(int panel) const { return panels_[static_cast<std::size_t>(panel) - 1]; }
  int Panels() const { return static_cast<int>(panels_.size()); }

 private:
  std::vector<std::string> panels_;
};

/// A surface with a drawing on the logical canvas.
class Canvas : public Control {
 public:
  Canvas(Form& f, std::string n) : Control(f, std::move(n), "") {}
  Drawing drawing;
  int version = 0;  // counts the drawings made, so that a host repaints only what is new
};

}  // namespace merlane
