#pragma once

#include <functional>

#include "forms/form.h"

namespace merlane {

/// The pane of the covariances: the course of the calculation, and then the report, which may be edited before it is
/// saved.
class FrmCovData : public Form {
 public:
  explicit FrmCovData(Desk& d);

  /// Opens empty for a calculation, which `cmdStop` interrupts.
  void OpenForCalculation();
  /// Opens for the report; `cmdStop` then closes the display.
  void OpenForReport();
  /// True once `cmdStop` has been pressed since the last asking; the button is then offered again.
  bool TakeInterrupt();

  /// Closes the display of the results.
  std::function<void()> onCloseDisplay;
  /// The pane has gone, so there is nothing left to save.
  std::function<void()> onClosed;

  Button cmdStop{*this, "cmdStop", InterruptCaption};
  Pane rtbCovData{*this, "rtbCovData"};

 protected:
  void OnUnload() override;

 private:
  static constexpr const char* InterruptCaption = "&Interrupt these calculations";

  void Stop();

  bool CovInterrupt_ = false;
};

}  // namespace merlane
