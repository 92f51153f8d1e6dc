#pragma once

#include <functional>
#include <string>

#include "batch/batch_clock.h"
#include "batch/headless_host.h"
#include "forms/desk.h"

namespace merlane {

/// What `export` writes, and what is to be told of it; empty when it is of the present run.
struct Exported {
  std::string bytes, note;
};
/// Exports "parameters", "visits" or "fit".
using Exporter = std::function<Exported(const std::string& what)>;

/// Does what the lines of a batch file say to the forms of a desk. A control that is not there, not visible or not
/// enabled ends the run with a message that says which it is.
class Actions {
 public:
  Actions(Desk& desk, HeadlessHost& host, BatchClock& clock, Exporter exporter);

  void Play(const BatchLine& line);

 private:
  void Perform(const BatchLine& line);
  void Press(const BatchLine& line);
  void Set(const BatchLine& line);
  void Select(const BatchLine& line);
  void DoubleClick(const BatchLine& line);
  void Type(const BatchLine& line);
  void Close(const BatchLine& line);
  void Arm(const BatchLine& line);
  void SaveText(const BatchLine& line);
  void SavePlot(const BatchLine& line);
  void Export(const BatchLine& line);
  void Write(const BatchLine& line, const std::function<std::string()>& bytes);

  /// The form of that name, or the control that the line names; ends the run when there is none.
  Form& FormNamed(const std::string& name, const BatchLine& line) const;
  Control& ControlOf(const BatchLine& line) const;
  /// The control as a `Kind`, which a person would call `kind`.
  template <class Kind>
  Kind& ControlAs(const BatchLine& line, const char* kind) const;
  /// Ends the run, telling why the control cannot be used, unless `done`.
  void Check(bool done, const BatchLine& line, const Control& control) const;
  std::string WhyUnusable(const Control& control) const;

  Desk& desk_;
  HeadlessHost& host_;
  BatchClock& clock_;
  Exporter exporter_;
};

}  // namespace merlane
