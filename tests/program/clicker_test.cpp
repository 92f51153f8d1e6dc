// A hostile hand at all windows: it presses any control, types what nobody would, names any file, gives any answer and
// closes any window, and the program neither dies nor hangs, shows no figure that is none, and is never left without
// anything that could be pressed.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "base/at_end.h"
#include "program/any_hand.h"

namespace merlane {
namespace {

using test::Golden;

class HostileHand : public test::AnyHand {
 public:
  using AnyHand::AnyHand;

  /// The longest that the program has kept everybody waiting between two signs of life, in seconds of the processor.
  double longest = 0;

  Answer MsgBox(const Message& message) override {
    SignOfLife();
    return AnyHand::MsgBox(message);
  }
  void Turn() override {
    SignOfLife();
    AnyHand::Turn();
  }
  void OnStatus(const std::string&, int, const std::string&) override { SignOfLife(); }
  void OnForm(Form&, FormEvent) override { SignOfLife(); }
  void SignOfLife() {
    const std::clock_t now = std::clock();
    if (heard_ != 0) longest = std::max(longest, static_cast<double>(now - heard_) / CLOCKS_PER_SEC);
    heard_ = now;
  }

 protected:
  std::string AnyText() override {
    static const std::string texts[] = {"",
                                        " ",
                                        "0",
                                        "-0",
                                        "1",
                                        "2",
                                        "17",
                                        "-1",
                                        "0.05",
                                        "1e-3",
                                        "0.5",
                                        "1995",
                                        "40",
                                        "99",
                                        "100",
                                        "32767",
                                        "32768",
                                        "-32769",
                                        "2147483648",
                                        "9e307",
                                        "-9e307",
                                        "1e308",
                                        "1e-320",
                                        "1e400",
                                        "-1e400",
                                        "1e",
                                        "e",
                                        ".",
                                        "+",
                                        "-",
                                        "--1",
                                        "1.2.3",
                                        "0x10",
                                        "1,5",
                                        "1 5",
                                        "1d3",
                                        "NAN",
                                        "INF",
                                        "-INF",
                                        "99999999999999999999",
                                        "1e-99999999999",
                                        "~",
                                        "~~",
                                        "~~~",
                                        "A",
                                        "AA",
                                        "AAA",
                                        "aa",
                                        "*",
                                        "Unused",
                                        "Q",
                                        "N",
                                        "\"",
                                        "'",
                                        "\\",
                                        "%s%n%d",
                                        "{}",
                                        "{0}",
                                        "<b>",
                                        "a,b;c",
                                        "\t",
                                        "\r\n",
                                        "1\r\n2",
                                        "\x01",
                                        std::string("1\0"
                                                    "2",
                                                    3),
                                        "\xff\xfe",
                                        "\xc3",
                                        "\xc3\xa9",
                                        "\xe2\x82\xac",
                                        "\xf0\x9f\x90\xa6",
                                        "\xe2\x80\xae"
                                        "1",
                                        "../../etc/passwd",
                                        "/",
                                        "C:\\x",
                                        std::string(300, '9'),
                                        std::string(5000, 'x'),
                                        "0." + std::string(400, '3'),
                                        "-" + std::string(310, '9')};
    return texts[Below(std::size(texts))];
  }
  std::optional<std::string> AnyInput(const InputRequest& request) override {
    switch (Below(6)) {
      case 0:
        return std::nullopt;
      case 1:
        return AnyText();
      case 2:
        return Pick<std::string>({"1", "2", "17", "18", "0.05", "0.5", "5"});
      default:
        return request.defaultText;
    }
  }
  std::optional<std::string> AnyFile(const FileRequest& request) override {
    if (Below(6) == 0) return std::nullopt;
    if (request.kind == FileRequest::Kind::Save)
      return Pick<std::string>({folder_ / "a", folder_ / "b.alg", folder_ / "c.dat", folder_ / "d.pri",
                                folder_ / "e.cov", folder_ / "\xc3\xa9 \xe2\x82\xac.alg", folder_ / "missing/a",
                                folder_ / "", "/dev/null", "/proc/version", folder_ / std::string(300, 'n'),
                                folder_ / "a/b"});
    if (Below(3) != 0) {
      if (request.title == "Open algorithm data file" && !ownAlgorithm_.empty() && Below(3) != 0) return ownAlgorithm_;
      if (request.title == "Load Bayesian Priors file") return Golden("priors.pri");
      if (request.title == "Import data") return AnyFileOf(MERLANE_SOURCE_DIR "/tests/data/import");
    }
    return Below(2) == 0 ? AnyFileOf(Golden(""))
                         : Pick<std::string>({folder_ / "a", folder_ / "b.alg", folder_ / "c.dat", folder_ / "d.pri",
                                              folder_ / "missing", folder_ / "", "/", "/dev/null", "/dev/zero",
                                              MERLANE_BUILD_DIR "/CMakeCache.txt", "/proc/self/mem",
                                              folder_ / std::string(300, 'n')});
  }
  int Liking(const Form& form, const Control& control) override {
    // Whoever only looks at the windows of the main menu bar sees nothing else.
    if (form.name == "frmMain") return Below(6) == 0 ? 1 : 0;
    if (dynamic_cast<const Button*>(&control) != nullptr || control.name == "mnuFinished") return 3;
    return 1;
  }
  void AddChoices(Control& control, std::vector<std::function<void()>>& choices) override {
    AnyHand::AddChoices(control, choices);
    if (auto* pane = dynamic_cast<Pane*>(&control); pane != nullptr && Below(4) == 0)
      choices.push_back(Noted(control, [this, pane] { desk->SetText(*pane, AnyText()); }));
    if (auto* grid = dynamic_cast<Grid*>(&control); grid != nullptr && grid->Rows() > 0) {
      const int row = static_cast<int>(Below(static_cast<std::size_t>(grid->Rows())));
      choices.push_back(Noted(control, [this, grid, row] { desk->SelectRow(*grid, row); }));
    }
  }

 private:
  std::string AnyFileOf(const std::string& folder) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      if (entry.is_regular_file()) files.push_back(entry.path().string());
    std::ranges::sort(files);
    return files[Below(files.size())];
  }

  std::clock_t heard_ = 0;
};

/// A word that a number is printed as when it is none.
bool HoldsNoNumber(const std::string& text) {
  const auto partOfWord = [&](std::size_t i) {
    return i < text.size() && (std::isalnum(static_cast<unsigned char>(text[i])) != 0 || text[i] == '_');
  };
  for (const std::string_view word : {"nan", "NaN", "inf", "Inf"})
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
      if ((at == 0 || !partOfWord(at - 1)) && !partOfWord(at + word.size())) return true;
  return false;
}

bool IsFinite(const Drawing::Item& item) {
  const auto all = [](std::initializer_list<double> numbers) {
    return std::ranges::all_of(numbers, [](double x) { return std::isfinite(x); });
  };
  if (const auto* line = std::get_if<Drawing::Line>(&item)) return all({line->x1, line->y1, line->x2, line->y2});
  if (const auto* circle = std::get_if<Drawing::Circle>(&item)) return all({circle->x, circle->y, circle->radius});
  if (const auto* box = std::get_if<Drawing::Box>(&item)) return all({box->x1, box->y1, box->x2, box->y2});
  const auto& text = std::get<Drawing::Text>(item);
  return all({text.x, text.y}) && !HoldsNoNumber(text.text);
}

/// What is shown somewhere that is no number; empty when there is nothing of the kind.
std::string NoNumberShown(const Desk& desk) {
  for (const Form* form : desk.Forms()) {
    if (!form->Visible()) continue;
    for (const Control* control : form->Controls()) {
      const std::string name = form->name + "." + control->name;
      if (HoldsNoNumber(control->text)) return name + ": " + control->text;
      if (const auto* grid = dynamic_cast<const Grid*>(control))
        for (int row = 0; row < grid->Rows(); ++row)
          for (int column = 0; column < grid->Columns(); ++column)
            if (HoldsNoNumber(grid->At(row, column).text)) return name + ": " + grid->At(row, column).text;
      if (const auto* bar = dynamic_cast<const StatusBar*>(control))
        for (int panel = 1; panel <= bar->Panels(); ++panel)
          if (HoldsNoNumber(bar->Get(panel))) return name + ": " + bar->Get(panel);
      if (const auto* list = dynamic_cast<const ListBox*>(control))
        for (const std::string& item : list->items)
          if (HoldsNoNumber(item)) return name + ": " + item;
      if (const auto* canvas = dynamic_cast<const Canvas*>(control))
        if (!std::ranges::all_of(canvas->drawing.items, IsFinite)) return name + " draws it";
    }
  }
  return "";
}

class ClickerTest : public ::testing::TestWithParam<unsigned> {};

TEST_P(ClickerTest, NeitherKillsNorBlocksTheProgramNorBringsFiguresThatAreNone) {
  const test::Folder folder("clicker_" + std::to_string(GetParam()));
  test::FixedClock clock;
  RandomStreams random(clock);
  random.SetSeed(GetParam());
  test::NoWorkbooks workbooks;
  HostileHand hand(GetParam(), folder);
  Program program({hand, clock, random, workbooks, folder / "", folder / ""});
  hand.desk = &program.desk;
  program.Start();
  if (GetParam() % 4 != 0) hand.Begin(program, GetParam() % 4 != 1);
  for (int i = 0; i < 200 && !hand.ended; ++i) {
    hand.SignOfLife();
    ASSERT_TRUE(hand.Act()) << hand.Story();
    hand.SignOfLife();
    if (hand.ended) break;
    ASSERT_FALSE(HasFailure()) << hand.Story();
    ASSERT_LT(hand.longest, 20) << hand.Story();
    ASSERT_EQ(NoNumberShown(program.desk), "") << hand.Story();
    ASSERT_TRUE(test::ThereIsAWayOn(program)) << hand.Story();
    ASSERT_TRUE(test::TheMenuRestsBesideAnother(program)) << hand.Story();
  }
}

/// How many hands try; more than by default when the environment says so.
unsigned Hands() {
  const char* const asked = std::getenv("MERLANE_CLICKERS");
  return asked == nullptr ? 20 : static_cast<unsigned>(std::stoul(asked));
}

INSTANTIATE_TEST_SUITE_P(Seeds, ClickerTest, ::testing::Range(1U, Hands() + 1));

}  // namespace
}  // namespace merlane
