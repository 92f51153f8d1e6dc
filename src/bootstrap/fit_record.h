#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "bootstrap/replicate_fit.h"
#include "control/objective.h"
#include "platform/shared_work.h"

namespace merlane {

/// Writes down the calls of a replicate's fit, so that another run can make the same fit without calculating them: a
/// digest of the data, then for each call a digest of what it was given and, where nothing was told and nothing failed,
/// its turns, the objective and what the model has rewritten of the vector.
class FitRecord : public FitWatch {
 public:
  void OnData(const std::string& text) override;
  FitCall& OnCall(std::int32_t NF, const Array1<double>& vector) override;
  void OnDone() override;

  Words words;

 private:
  std::optional<FitCall> call_;
};

/// Follows a record, call by call. Words that are no record answer nothing.
class RecordedFit {
 public:
  /// Keeps a reference. `turns` gives so many.
  RecordedFit(const Words& words, std::function<void(long)> turns) : words_(words), turns_(std::move(turns)) {}

  /// True when it is a fit to these data.
  bool IsTo(const std::string& dataText) const;
  /// Gives the outcome of the next call; false when it is to be calculated. A call that is not the recorded one ends
  /// the following.
  bool Answer(ModelCall& call);
  /// True as long as no call was another one than the recorded.
  bool Fitted() const { return fitted_; }

 private:
  bool Leave() {
    fitted_ = false;
    next_ = words_.size();
    return false;
  }

  const Words& words_;
  const std::function<void(long)> turns_;
  std::size_t next_ = 1;
  bool fitted_ = true;
};

}  // namespace merlane
