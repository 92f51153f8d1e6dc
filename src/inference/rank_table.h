#pragma once

#include <string>
#include <vector>

#include "forms/controls.h"
#include "inference/ranking.h"

namespace merlane {

/// The table of competing models in the ranking's window: a row for each below the headings, in the order of entry or
/// as they were ranked last. The first heading says which.
class RankTable {
 public:
  enum Column { Order, NegLnL, K, Criterion, Delta, Weight, AlgorithmFile, CovarianceFile, PriorsFile, Notes, Count };

  RankTable(Grid& grid, const Ranking& ranking);

  /// No model yet.
  void Clear();
  void NameColumns();

  /// What the heading of the first column says of the table.
  bool IsRanked() const;
  /// Shows all models as they were ranked.
  void ShowRanked();
  /// Shows all models in the order of entry; the row of one that is half done stays as it is.
  void ShowEntered();
  /// The table is no longer ranked: differences and weights are undefined.
  void Unrank(Colour heading);

  /// An empty row for the model that has just been entered.
  void AddRow();
  /// Shows the model that was entered last, in the colour of a row that is new.
  void ShowNew(const Competitor& model);
  /// Takes a row out; those below move up and keep their entry numbers.
  void DeleteRow(int position);
  /// Shows the figures of a model that stand on another scale now.
  void ShowScaled(int position, const Competitor& model);
  void Show(int position, Column column, const std::string& text) { grid_.At(position, column).text = text; }
  const std::string& Text(int position, Column column) const { return grid_.At(position, column).text; }

 private:
  void SetOrderHeading(const char* text, Colour colour);
  void WriteRow(int position, const Competitor& model, int entry);

  Grid& grid_;
  const Ranking& ranking_;
};

}  // namespace merlane
