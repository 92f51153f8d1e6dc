#pragma once

#include <array>
#include <cstddef>

namespace merlane {

/// What the editor of the algorithm data can offer.
enum class EditItem { Values = 1, Steps, Fuses, Tolerance, MaxCalls, TerminalFreq, FileFreq, Log, StepReduction };

/// The nine edit marks, one for each EditItem: true is locked.
struct EditMarks {
  std::array<bool, 9> locked{};
  bool Offered(EditItem item) const { return !locked[static_cast<std::size_t>(item) - 1]; }
};

/// Everything is offered.
inline constexpr EditMarks EditEverything{};
/// Values and steps alone: for the commands that need no more before they start.
inline constexpr EditMarks EditValuesAndSteps{{false, false, true, true, true, true, true, true, true}};
/// Everything but the log, which is opened and closed from the main menu's editor alone.
inline constexpr EditMarks EditAllButLog{{false, false, false, false, false, false, true, true, false}};

}  // namespace merlane
