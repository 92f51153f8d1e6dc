#pragma once

#include <map>
#include <optional>
#include <string>

#include "forms/desk.h"

namespace merlane {

/// What the page is told of the forms, as JSON: what has changed since it was told last.
class FormText {
 public:
  /// All that is new of the forms of a desk; empty when nothing is. Of a form that is shown for the first time, its
  /// layout too (web/layout_text.h).
  std::string News(const Desk& desk);
  /// The page shows of this control what a person did to it: its state is told again, whatever came of that.
  void Forget(const Control& control);

 private:
  struct Told {
    bool visible = false, takesInput = true;
    std::string title;
    std::map<const Control*, std::string> controls;              // their JSON
    std::map<const Control*, std::optional<std::string>> panes;  // the long texts, which mostly grow
    std::map<const Control*, int> drawings;                      // their versions
  };

  std::string NewsOf(Form& form);
  std::string NewsOf(const Control& control, Told& told);

  std::map<const Form*, Told> told_;
};

}  // namespace merlane
