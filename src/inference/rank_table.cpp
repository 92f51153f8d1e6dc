#include "inference/rank_table.h"

#include <fmt/format.h>

#include "base/number_text.h"

namespace merlane {
namespace {

constexpr const char* Random = "Random";
constexpr const char* Ranked = "Ranked";
constexpr const char* Figure = "0.0000E+00";

/// The row's position and the model's entry number, as in "   3)  12".
std::string RowLabel(int position, int entry) {
  return fmt::format("{}{}){}{}", position < 10 ? "   " : " ", position, entry < 10 ? "    " : "  ", entry);
}

/// The label of a row that moves to another position; a row without one stays without.
std::string MovedLabel(const std::string& label, int position) {
  const std::size_t end = label.find(')');
  return end == std::string::npos ? label : RowLabel(position, std::stoi(label.substr(end + 1)));
}

}  // namespace

RankTable::RankTable(Grid& grid, const Ranking& ranking) : grid_(grid), ranking_(ranking) { grid_.Resize(1, Count); }

void RankTable::Clear() {
  grid_.Resize(1, Count);
  SetOrderHeading(Random, Colour::Default);
  NameColumns();
}

void RankTable::NameColumns() {
  const bool q = ranking_.ByQAICc();
  const char* names[] = {nullptr,
                         "-ln[L]",
                         "K",
                         q ? "QAICc" : "AICc",
                         q ? "dQAICc" : "dAICc",
                         q ? "QAIC Wt" : "AIC Wt",
                         "Algorithm file name",
                         "Covariance file name",
                         "Priors file name",
                         "Notes:"};
  for (int column = NegLnL; column < Count; ++column) grid_.At(0, column).text = names[column];
}

bool RankTable::IsRanked() const { return grid_.At(0, Order).text == Ranked; }

void RankTable::SetOrderHeading(const char* text, Colour colour) {
  grid_.At(0, Order).text = text;
  grid_.At(0, Order).fore = colour;
}

void RankTable::ShowRanked() {
  SetOrderHeading(Ranked, ranking_.ByQAICc() ? Colour::Blue : Colour::Green);
  int position = 0;
  for (const Competitor& model : ranking_.ranked) WriteRow(++position, model, model.RankOrder);
}

void RankTable::ShowEntered() {
  int position = 0;
  for (const Competitor& model : ranking_.entered) {
    ++position;
    if (model.constant != 0) WriteRow(position, model, position);  // one that is half done has no figures
  }
}

void RankTable::Unrank(Colour heading) {
  for (int row = 1; row < grid_.Rows(); ++row)
    for (const Column column : {Delta, Weight}) grid_.At(row, column).text = DefinedText(std::nullopt, Figure);
  SetOrderHeading(Random, heading);
}

void RankTable::AddRow() { grid_.Resize(ranking_.ModelCount() + 1, Count); }

void RankTable::ShowNew(const Competitor& model) {
  const int position = ranking_.ModelCount();
  WriteRow(position, model, model.RankOrder);
  for (int column = 0; column < Count; ++column) grid_.At(position, column).fore = Colour::LightRed;
}

void RankTable::DeleteRow(int position) {
  for (int row = position; row < grid_.Rows() - 1; ++row) {
    for (int column = 0; column < Count; ++column) grid_.At(row, column) = grid_.At(row + 1, column);
    grid_.At(row, Order).text = MovedLabel(grid_.At(row, Order).text, row);
  }
  grid_.Resize(ranking_.ModelCount() + 1, Count);
}

void RankTable::ShowScaled(int position, const Competitor& model) {
  Show(position, NegLnL, Format(model.RankNegLnL, Figure));
  Show(position, Criterion, Format(ranking_.Criterion(model), Figure));
}

void RankTable::WriteRow(int position, const Competitor& model, int entry) {
  const std::string cells[] = {RowLabel(position, entry),
                               Format(model.RankNegLnL, Figure),
                               std::to_string(model.RankK),
                               Format(ranking_.Criterion(model), Figure),
                               DefinedText(ranking_.Delta(model), Figure),
                               DefinedText(ranking_.Weight(model), Figure),
                               model.Name(),
                               model.RankCovFile,
                               model.RankPriFile,
                               model.RankNotes};
  for (int column = 0; column < Count; ++column)
    grid_.At(position, column) = {cells[column], Colour::Default, Colour::Default};
}

}  // namespace merlane
