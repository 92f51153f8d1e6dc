#pragma once

#include <QtWidgets>
#include <initializer_list>
#include <set>
#include <string>

#include "ui/form_window.h"

namespace merlane {

/// What a layout takes its pieces from: the widgets of a form by the names of their controls. A name that the form does
/// not have is passed over; what a layout has not taken is put below it, so that no control can be lost.
class Layouter {
 public:
  explicit Layouter(FormWindow& formWindow) : window(formWindow) {}

  FormWindow& window;

  /// The widget of that control, now taken; null when there is none.
  QWidget* Take(const std::string& name);
  bool Taken(const std::string& name) const { return taken_.contains(name); }

  /// Widgets side by side, from the left.
  QHBoxLayout* Row(std::initializer_list<const char*> names);
  /// Buttons side by side at the right end.
  QHBoxLayout* Buttons(std::initializer_list<const char*> names);
  /// Widgets one below the other.
  QVBoxLayout* Column(std::initializer_list<const char*> names);
  /// A frame with a title around a layout; it is seen while one of the controls in it is.
  QGroupBox* Group(const QString& title, QLayout* content);
  /// A line of a table of fields: what it is called, and the field.
  void Field(QGridLayout& fields, const char* label, std::initializer_list<const char*> parts);
  /// A label that may take several lines.
  QLabel* Note(const char* name);
  /// Buttons side by side at the right end below all else, in sight whatever has to be scrolled.
  QHBoxLayout* PinButtons(std::initializer_list<const char*> names);
  /// A layout that goes up and down by itself where there is too little room.
  ScrollView* Scrolled(QLayout* content);
  /// The size of a window that shows that much fixed-pitch text.
  void PreferText(int columns, int lines);

 private:
  std::set<std::string> taken_;
};

/// A layout for one form; the widgets go into `column`, from the top.
using Layout = void (*)(Layouter& layouter, QVBoxLayout& column);

/// Lays out the window's widgets by the layout of its form or, where the form has none, as they come.
void LayOut(FormWindow& window);

// The layouts.
void LayOutMenu(Layouter& layouter, QVBoxLayout& column);
void LayOutInitialize(Layouter& layouter, QVBoxLayout& column);
void LayOutImport(Layouter& layouter, QVBoxLayout& column);
void LayOutAlgorithm(Layouter& layouter, QVBoxLayout& column);
void LayOutRank(Layouter& layouter, QVBoxLayout& column);
void LayOutXyPlot(Layouter& layouter, QVBoxLayout& column);
void LayOutDistPlot(Layouter& layouter, QVBoxLayout& column);
void LayOutBivarPlot(Layouter& layouter, QVBoxLayout& column);
void LayOutText(Layouter& layouter, QVBoxLayout& column);
void LayOutWideText(Layouter& layouter, QVBoxLayout& column);
void LayOutPage(Layouter& layouter, QVBoxLayout& column);
void LayOutTable(Layouter& layouter, QVBoxLayout& column);
void LayOutCommands(Layouter& layouter, QVBoxLayout& column);
void LayOutCovDisplay(Layouter& layouter, QVBoxLayout& column);
void LayOutAbort(Layouter& layouter, QVBoxLayout& column);
void LayOutGeneric(Layouter& layouter, QVBoxLayout& column);

}  // namespace merlane
